// Load-time set-up of libwxsupport. The library keeps no state but the moment
// at which it was loaded; that is recorded by the about dialog's unit.
