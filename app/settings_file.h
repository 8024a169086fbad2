#pragma once

#include <QString>

/// Path of the settings file "Tavrel.ini": in the working directory; where that has no such file
/// and none can be created (a shell may start the program anywhere), in the user's configuration
/// folder. Looked up anew at every call.
QString settings_path();
