#pragma once

#include "demo/pictures.h"
#include "demo/sample_directories.h"

/// Takes the pictures of the manual, in the language that the application has been given. The
/// samples are damaged on the way. False when a window did not come or a picture was not written.
bool take_manual_pictures(const SampleDirectories& samples, const Pictures& pictures);
