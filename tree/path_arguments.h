#pragma once

#include <QStringList>

class MyTreeWidget;

/// Takes the paths that the program was started with. One of a directory opens it and hashes its
/// files; one of a file opens its directory and hashes the file, or verifies by it when it is a
/// checksum file. Several select and hash the files among them that lie in the last one's
/// directory. What is not there is passed over.
void open_arguments(MyTreeWidget& pane, const QStringList& paths);
