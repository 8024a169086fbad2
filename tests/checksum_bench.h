#pragma once

#include "tests/pane_fixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScreen>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

/// How every checksum file of the program begins.
inline const QByteArray checksum_header =
    QStringLiteral("# Fichier créé avec Tavrel\n# https://tavrel.example/\n#\n\n").toLocal8Bit();

/// Notes the message boxes that open while it lives, and closes each by its only button.
class BoxCatcher
{
  public:
    BoxCatcher()
    {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
        timer_.start(1);
    }

    /// Title and text of every box since the last call.
    QStringList take() { return std::exchange(texts_, {}); }

    bool last_fits_the_screen = false;
    bool last_has_picture = false;
    QStringList last_lines; ///< of the view that a long report has

  private:
    void look()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible()) {
            return;
        }
        texts_ << box->windowTitle() << box->text();
        last_fits_the_screen = box->screen()->availableGeometry().contains(box->frameGeometry());
        last_has_picture = box->icon() == QMessageBox::NoIcon && !box->iconPixmap().isNull();
        const auto* view = box->findChild<QPlainTextEdit*>();
        last_lines = view ? view->toPlainText().split(u'\n', Qt::SkipEmptyParts) : QStringList();
        QCOMPARE(box->buttons().size(), 1);
        box->buttons().first()->click();
    }

    QStringList texts_;
    QTimer timer_;
};

/// The first pane of a window, shown on a directory of the test.
class ChecksumBench : public WindowFixture
{
  public:
    explicit ChecksumBench(QCryptographicHash::Algorithm algorithm = QCryptographicHash::Md5)
        : md5(algorithm == QCryptographicHash::Md5), suffix(QLatin1String(md5 ? ".md5" : ".sha1")),
          file_of_all(QDir(dir.path()).dirName() + suffix)
    {}

    void open() { first->changeModel(dir.at()); }

    /// A checksum file with a line for each of these files, whose content is their name.
    QByteArray lines(const QStringList& names) const
    {
        QByteArray text = checksum_header;
        for (const QString& name : names) {
            text += reference_digest(name.toUtf8(),
                                     md5 ? QCryptographicHash::Md5 : QCryptographicHash::Sha1)
                        .toLatin1() +
                    "  " + name.section(u'/', -1).toLocal8Bit() + '\n';
        }
        return text;
    }

    /// Chooses the command that writes a file for each selected one.
    void start_files(const QStringList& selected)
    {
        select_names(*first, selected);
        (md5 ? first->act_md5_file : first->act_sha1_file)->trigger();
    }
    bool write_files(const QStringList& selected)
    {
        start_files(selected);
        return wait_idle();
    }

    void start_directory_file()
    {
        (md5 ? first->act_md5_dir_file : first->act_sha1_dir_file)->trigger();
    }
    bool write_directory_file()
    {
        start_directory_file();
        return wait_idle();
    }

    bool verify(const QString& name)
    {
        activate(*first, name);
        return wait_idle();
    }

    /// Stops the job once it has hashed "a.txt".
    bool stop_behind_a()
    {
        const bool hashed = QTest::qWaitFor([&] { return a_is_hashed(); }, 60000);
        first->stop_button->click();
        return wait_idle() && hashed;
    }

    /// What the view was left at: the text of the status bar, then the names of the selected rows.
    QString left_at() const
    {
        return window->statusBar()->currentMessage() + QStringLiteral(" | ") + selected_in(*first);
    }

    /// Whether a plain job is nothing but that: no writer or verifier hangs on its end, for either
    /// would list the directory anew and report or write something.
    bool plain_job_stays_plain()
    {
        const QString before = dir.entries();
        select_names(*first, {a_txt});
        first->HashThis();
        return wait_idle() && dir.entries() == before && boxes.take().isEmpty() && a_is_hashed();
    }

    TestDir dir;
    BoxCatcher boxes;
    const bool md5;
    const QString suffix;
    const QString file_of_all; ///< the name of the directory's checksum file

  private:
    bool a_is_hashed() const { return !checksum_at(*first, a_txt).isEmpty(); }

    const QString a_txt = QStringLiteral("a.txt");
};

/// What a run that failed leaves among the exclusions.
inline const QStringList left_exclusions{QStringLiteral("sha1"), QStringLiteral("md5")};

/// Rows of a test for either algorithm.
inline void add_algorithms()
{
    QTest::addColumn<QCryptographicHash::Algorithm>("algorithm");
    QTest::newRow("MD5") << QCryptographicHash::Md5;
    QTest::newRow("SHA1") << QCryptographicHash::Sha1;
}
