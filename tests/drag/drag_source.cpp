// A program from whose window files can be dragged: those named by its arguments. It says on the
// standard output when its window is there and when a drag begins.

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QTextStream>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

class Source : public QWidget
{
  protected:
    void paintEvent(QPaintEvent*) override { say(u"shown"_s); }

    void mousePressEvent(QMouseEvent*) override
    {
        auto* files = new QMimeData;
        QList<QUrl> urls;
        for (const QString& path : QCoreApplication::arguments().mid(1)) {
            urls.append(QUrl::fromLocalFile(path));
        }
        files->setUrls(urls);
        // Not on the stack: the target asks for the data when exec() has returned.
        auto* drag = new QDrag(this);
        drag->setMimeData(files);
        say(u"dragging"_s);
        drag->exec(Qt::CopyAction);
    }
};

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    Source source;
    source.setGeometry(1000, 100, 200, 200);
    source.show();
    return QApplication::exec();
}
