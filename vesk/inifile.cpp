// Placeholder until the store lands.
#include <wxsupport/config/inifile.h>

#include <stdlib.h>
#include <string.h>

char* pd_strdup(const char* text) {
    return text ? strdup(text) : nullptr;
}
