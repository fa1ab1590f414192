/// \file
/// All of wxsupport's public headers.
#ifndef WXSUPPORT_WXSUPPORT_H
#define WXSUPPORT_WXSUPPORT_H

#include <wxsupport/config/inifile.h>
#include <wxsupport/config/wxinifile.h>
#include <wxsupport/console/console.h>
#include <wxsupport/controls/animation.h>
#include <wxsupport/controls/drawing.h>
#include <wxsupport/controls/pdsizegroup.h>
#include <wxsupport/controls/pdtextctrl.h>
#include <wxsupport/dialogs/aboutdlg.h>
#include <wxsupport/dialogs/crashreportdialog.h>
#include <wxsupport/notify/dialogwithnotification.h>
#include <wxsupport/notify/notificationpanel.h>
#include <wxsupport/text/jmsdatetime.h>
#include <wxsupport/text/strings.h>
#include <wxsupport/xml/xml-reader.h>

#endif // WXSUPPORT_WXSUPPORT_H
