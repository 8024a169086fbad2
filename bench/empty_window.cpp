// What the start of the program is measured against: a bare main window with two trees.

#include <QApplication>
#include <QMainWindow>
#include <QSplitter>
#include <QTreeWidget>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    auto* splitter = new QSplitter;
    splitter->addWidget(new QTreeWidget);
    splitter->addWidget(new QTreeWidget);
    window.setCentralWidget(splitter);
    window.resize(800, 600);
    window.show();
    return QApplication::exec();
}
