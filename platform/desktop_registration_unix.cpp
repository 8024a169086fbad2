#include "platform/desktop_registration.h"

#include "platform/mime_apps_list_unix.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace platform {

namespace {

constexpr int tool_timeout = 5000; // ms
constexpr int kill_timeout = 1000; // ms

const QByteArray desktop_id = "tavrel.desktop";
const QList<QByteArray> checksum_types = {"text/x-md5sum", "text/x-sha1sum"};
/// Types from which the desktop derives all others.
const QList<QByteArray> general_types = {"inode/directory", "application/octet-stream"};

QString data_path(QLatin1StringView path)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/' + path;
}

QString desktop_entry_path()
{
    return data_path("applications/tavrel.desktop"_L1);
}

QString mime_package_path()
{
    return data_path("mime/packages/tavrel.xml"_L1);
}

QString icon_path()
{
    return data_path("icons/hicolor/128x128/apps/tavrel.png"_L1);
}

/// Replaces the file as a whole or leaves it as it was. Answers which.
bool write_file(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    // commit() does not see that its own last flush failed.
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.flush() && file.commit();
}

/// What the tool prints; empty when it is missing, fails or does not come to an end.
QByteArray output_of(const QString& tool, const QStringList& arguments)
{
    const QString path = QStandardPaths::findExecutable(tool);
    if (path.isEmpty()) {
        return {};
    }
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    // The window is painted meanwhile, and takes no second command.
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(&process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
    QTimer::singleShot(tool_timeout, &loop, &QEventLoop::quit);
    process.start(path, arguments);
    if (process.state() != QProcess::NotRunning) {
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    }
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(kill_timeout);
        return {};
    }
    const bool success = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return success ? process.readAllStandardOutput() : QByteArray();
}

void refresh_databases()
{
    output_of(u"update-mime-database"_s, {data_path("mime"_L1)});
    output_of(u"update-desktop-database"_s, {data_path("applications"_L1)});
}

/// A text as value of a desktop entry.
QString escaped(QString text)
{
    return text.replace(u'\\', "\\\\"_L1).replace(u'\n', "\\n"_L1).replace(u'\t', "\\t"_L1);
}

/// A path as argument of an Exec line, where "%" begins a field code.
QString quoted(const QString& path)
{
    QString argument;
    for (const QChar c : path) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\') {
            argument += u'\\';
        } else if (c == u'%') {
            argument += u'%';
        }
        argument += c;
    }
    return u'"' + argument + u'"';
}

/// A default application that was written down, so that the program does not become it.
struct KeptDefault
{
    QByteArray type;
    QByteArray app;
};

/// The key of the entry that remembers them, as "type=app;" for each.
const QByteArray kept_key = "X-Tavrel-Kept=";

/// The entry offers the program for `types` and remembers which defaults were written down.
QByteArray desktop_entry(const QString& program_path, const QList<QByteArray>& types,
                         const QList<KeptDefault>& kept)
{
    QByteArray kept_value;
    for (const KeptDefault& each : kept) {
        kept_value += each.type + '=' + each.app + ';';
    }
    const QString entry = uR"([Desktop Entry]
Type=Application
Version=1.0
Name=Tavrel
Comment=Checksums and directory comparison
Comment[fr]=Sommes de contrôle et comparaison de répertoires
Icon=tavrel
TryExec=%1
Exec=%2 %F
MimeType=%3;
Categories=Utility;FileTools;Qt;
%4)"_s;
    const QByteArray kept_line = kept.isEmpty() ? QByteArray() : kept_key + kept_value + '\n';
    return entry
        .arg(escaped(program_path), escaped(quoted(program_path)),
             QString::fromLatin1(types.join(';')), QString::fromLatin1(kept_line))
        .toUtf8();
}

/// The value of a key in a desktop entry; empty when it is not there.
QByteArray value_in(const QString& path, const QByteArray& key)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : file.readAll().split('\n')) {
            if (line.startsWith(key)) {
                return line.sliced(key.size()).trimmed();
            }
        }
    }
    return {};
}

QList<KeptDefault> kept_defaults()
{
    QList<KeptDefault> kept;
    for (const QByteArray& each : value_in(desktop_entry_path(), kept_key).split(';')) {
        const qsizetype equals = each.indexOf('=');
        if (equals > 0) {
            kept.append({each.first(equals), each.sliced(equals + 1)});
        }
    }
    return kept;
}

/// Whether the system has installed this very program, with an entry that others than the user see.
bool is_installed(const QString& program_path)
{
    QStringList entries = QStandardPaths::locateAll(QStandardPaths::GenericDataLocation,
                                                    u"applications/tavrel.desktop"_s);
    entries.removeAll(desktop_entry_path());
    return std::any_of(entries.begin(), entries.end(), [&](const QString& entry) {
        // What it tries is the program itself; what it executes may be something that starts it.
        const QString tried = QString::fromUtf8(value_in(entry, "TryExec="));
        const QString exec = QString::fromUtf8(value_in(entry, "Exec="));
        const QString command = tried.isEmpty() ? QProcess::splitCommand(exec).value(0) : tried;
        const QString program = QStandardPaths::findExecutable(command);
        return !program.isEmpty() && QFileInfo(program) == QFileInfo(program_path);
    });
}

/// Heavier than what other packages usually say of the same names.
QByteArray mime_package()
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<mime-info xmlns="http://www.freedesktop.org/standards/shared-mime-info">
  <mime-type type="text/x-md5sum">
    <comment>MD5 checksum file</comment>
    <comment xml:lang="fr">fichier de sommes MD5</comment>
    <sub-class-of type="text/plain"/>
    <glob pattern="*.md5" weight="80"/>
  </mime-type>
  <mime-type type="text/x-sha1sum">
    <comment>SHA1 checksum file</comment>
    <comment xml:lang="fr">fichier de sommes SHA1</comment>
    <sub-class-of type="text/plain"/>
    <glob pattern="*.sha1" weight="80"/>
  </mime-type>
</mime-info>
)";
}

void install_icon()
{
    QFile icon(u":/res/logo.png"_s);
    if (icon.open(QIODevice::ReadOnly)) {
        write_file(icon_path(), icon.readAll());
    }
}

/// Changes the user's mimeapps.list, unless it is there and cannot be read. Answers whether it now
/// says what it should.
template<typename Change>
bool change_mime_apps_list(Change change)
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                         "/mimeapps.list"_L1;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) && file.exists()) {
        return false;
    }
    const QByteArray before = file.isOpen() ? file.readAll() : QByteArray();
    if (file.isOpen() && file.error() != QFileDevice::NoError) {
        return false;
    }
    file.close();
    MimeAppsList list(before);
    change(list);
    const QByteArray after = list.content();
    return after == before || (after.isEmpty() ? QFile::remove(path) : write_file(path, after));
}

QByteArray default_application(const QByteArray& type)
{
    return output_of(u"xdg-mime"_s, {u"query"_s, u"default"_s, QString::fromLatin1(type)})
        .trimmed();
}

/// What the desktop opens the general types with today, as far as it can be asked.
QList<KeptDefault> present_defaults()
{
    QList<KeptDefault> present;
    for (const QByteArray& type : general_types) {
        const QByteArray app = default_application(type);
        present.append({type, app == desktop_id ? QByteArray() : app});
    }
    return present;
}

void make_default(MimeAppsList& list)
{
    list.allow(desktop_id);
    for (const QByteArray& type : checksum_types) {
        list.set_default(type, desktop_id);
    }
}

void install_entry(const QString& program_path, const QList<QByteArray>& types,
                   const QList<KeptDefault>& kept)
{
    write_file(desktop_entry_path(), desktop_entry(program_path, types, kept));
    write_file(mime_package_path(), mime_package());
    install_icon();
    refresh_databases();
}

} // namespace

void register_with_desktop(const QString& program_path)
{
    if (is_installed(program_path)) {
        // An entry of the user's own, from before, would hide the installed one.
        if (QFile::exists(desktop_entry_path())) {
            unregister_from_desktop();
        }
        change_mime_apps_list(make_default);
        return;
    }
    // Where a desktop only guesses the default of a type, a new entry of the user's comes first in
    // its guess. So the program is offered where another one is named, by this if need be.
    const QList<KeptDefault> present = present_defaults();
    QList<KeptDefault> kept = kept_defaults();
    QList<QByteArray> offered;
    const bool named = change_mime_apps_list([&](MimeAppsList& list) {
        make_default(list);
        for (const KeptDefault& each : present) {
            if (!list.has_default(each.type) && !each.app.isEmpty()) {
                list.set_default(each.type, each.app);
                kept.append(each);
            }
            if (list.has_default(each.type)) {
                offered.append(each.type);
            }
        }
    });
    install_entry(program_path, named ? checksum_types + offered : checksum_types, kept);
}

void unregister_from_desktop()
{
    change_mime_apps_list([](MimeAppsList& list) {
        list.forget(desktop_id);
        for (const KeptDefault& each : kept_defaults()) {
            list.remove_default(each.type, each.app);
        }
        list.drop_empty_defaults();
    });
    for (const QString& path : {desktop_entry_path(), mime_package_path(), icon_path()}) {
        QFile::remove(path);
    }
    refresh_databases();
}

} // namespace platform
