#pragma once

#include <QString>

/// Switches the toolkit's own texts (menus of text lines, names of keys, standard buttons) to the
/// program's language: "en" takes the toolkit's catalogue away, any other code means French.
///
/// The catalogue is looked for where the toolkit was installed and in the folder "translations"
/// beside the program; where neither has it, these texts stay English. Needs the application
/// object, which owns what is loaded; GUI thread only.
void use_toolkit_texts(const QString& language);
