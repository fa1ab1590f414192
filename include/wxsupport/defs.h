/// \file
/// Export macro of libwxsupport. Everything that the public headers declare is
/// exported; all else in the library has hidden visibility.
#ifndef WXSUPPORT_DEFS_H
#define WXSUPPORT_DEFS_H

#if defined(_WIN32)
#if defined(WXSUPPORT_BUILDING)
#define WXSUPPORT_API __declspec(dllexport)
#else
#define WXSUPPORT_API __declspec(dllimport)
#endif
#else
#define WXSUPPORT_API __attribute__((visibility("default")))
#endif

#endif // WXSUPPORT_DEFS_H
