#include "tests/support/scene.h"

#include "dialogs/fencheck.h"
#include "dialogs/fenres.h"

Scene::Scene()
{
    QDir::setCurrent(working_dir.path());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(working_dir.path()));
    working_dir.createDir(u"l"_s);
    working_dir.createDir(u"r"_s);
    rebuild();
    first->changeModel(working_dir.at(u"l"_s));
    second->changeModel(working_dir.at(u"r"_s));
    look_at_dialogs();
}

Scene::~Scene()
{
    window.reset();
    QDir::setCurrent(old_dir_);
}

void Scene::rebuild()
{
    window.reset();
    window = std::make_unique<MainFen>();
    first = window->first_pane();
    second = window->second_pane();
    wait_idle();
}

bool Scene::is_busy() const
{
    return first->job_running() || second->job_running() || first->is_listing() ||
           second->is_listing() || window->is_marking();
}

bool Scene::wait_idle() const
{
    // What ends may begin something else by a queued signal.
    for (int quiet = 0; quiet < 3; ++quiet) {
        if (!QTest::qWaitFor([this] { return !is_busy(); }, 60000)) { return false; }
        QCoreApplication::processEvents();
        quiet = is_busy() ? 0 : quiet;
    }
    return true;
}

void Scene::look_at_dialogs()
{
    // Each look has a timer of its own: what one does may open the dialog that the next is for.
    QTimer::singleShot(1, &watch_, [this] { look_at_dialogs(); });
    QWidget* modal = uses_dialogs ? QApplication::activeModalWidget() : nullptr;
    if (auto* box = qobject_cast<QMessageBox*>(modal); box && box->isVisible()) {
        const auto* lines = box->findChild<QAbstractItemView*>();
        const QString more = lines ? u" (%1)"_s.arg(lines->model()->rowCount()) : QString();
        seen_ << u"[%1] %2"_s.arg(box->windowTitle(), told(box->text())) + more;
        const QString wanted = steps_.isEmpty() ? QString() : steps_.takeFirst().section(u' ', 1);
        (wanted.isEmpty() ? box->buttons().constFirst() : named<QAbstractButton>(*box, wanted))
            ->click();
    } else if (qobject_cast<FenRes*>(modal)) {
        modal->close(); // the results: they would keep a box below them from being closed
    } else if (auto* dialog = qobject_cast<QDialog*>(modal); dialog && !box && dialog != used_) {
        used_ = dialog;
        use(*dialog);
        used_ = nullptr;
    }
}

/// Does in a dialog what was asked for; one in which there is nothing to do any more is described
/// and left.
void Scene::use(QDialog& dialog)
{
    auto* line = dialog.findChild<QLineEdit*>();
    while (dialog.isVisible() && !steps_.isEmpty()) {
        const QString step = steps_.takeFirst();
        const QString what = step.section(u' ', 0, 0);
        const QString text = step.section(u' ', 1);
        if (what == "type"_L1) {
            line->selectAll();
            QTest::keyClicks(line, text);
        } else if (what == "key"_L1) {
            press(*line, text);
        } else if (what == "tick"_L1) {
            named<QCheckBox>(dialog, text)->click();
        } else if (what == "run"_L1) {
            run(text + u'&');
        } else if (what == "close"_L1) {
            dialog.close();
        } else {
            named<QAbstractButton>(dialog, text)->click();
        }
    }
    const bool check = qobject_cast<FenCheck*>(&dialog);
    auto* button = dialog.findChild<QPushButton*>();
    if (!dialog.isVisible() || (check && !line->isEnabled() && button->text() != u"Ok"_s)) {
        return; // gone, or its file is still being read
    }
    const QString style = line->styleSheet();
    QStringList texts(style.contains(u"background-color: green"_s)              ? u"right"_s
                      : style.contains(u"background-color: rgb(220, 70, 70)"_s) ? u"wrong"_s
                      : check                                                   ? u"refused"_s
                                                                                : line->text());
    for (const auto* box : dialog.findChildren<QCheckBox*>()) {
        texts << (box->isChecked() ? box->text() : QString());
    }
    for (const auto* combo : dialog.findChildren<QComboBox*>()) { texts << combo->currentText(); }
    texts.removeAll(QString());
    seen_ << u"[%1] %2"_s.arg(dialog.windowTitle(), texts.join(u"; "_s));
    check ? button->click() : void();
    dialog.close();
}

/// A text with the directory of the scene and every time left out.
QString Scene::told(QString text) const
{
    static const QRegularExpression time(u"\\d+\\.\\d\\ds"_s);
    text.replace(working_dir.at() + u'/', u"~"_s).replace(working_dir.at(), u"~"_s);
    text.replace(time, u"T"_s).replace(u'\n', u'|');
    return text.replace(u"/proc/sys/vm/compact_memory"_s, u"~l/zsecret"_s).trimmed();
}

/// "md5" or "sha1" when that is what the file holds now, in capitals when the digest is; else "?".
QString Scene::digest_name(const QString& hex, const QString& path) const
{
    const auto algorithm = hex.size() == 32 ? QCryptographicHash::Md5 : QCryptographicHash::Sha1;
    QFile file(path);
    const bool right = file.open(QIODevice::ReadOnly) && file.size() < TestDir::huge &&
                       hex.toLower() == reference_digest(file.readAll(), algorithm);
    const QString name = hex.size() == 32 ? u"md5"_s : u"sha1"_s;
    return !right ? u"?"_s : hex == hex.toLower() ? name : name.toUpper();
}

/// What a row shows beside its name: "*" selected, the digest, the mark's colour.
QString Scene::flags_of(const QTreeWidgetItem& row) const
{
    const QString hash = checksum_of(row);
    QStringList flags;
    if (hash == u"Impossible d'ouvrir le fichier "_s + path_of(row)) {
        flags << u"unreadable"_s;
    } else if (!hash.isEmpty()) {
        flags << digest_name(hash, path_of(row));
    }
    static const QHash<QRgb, QString> names = {{0xff00ff00, u"green"_s},
                                               {0xffff0000, u"red"_s},
                                               {0xffffff00, u"yellow"_s},
                                               {0xffffffff, u"white"_s}};
    const QBrush mark = row.background(ColSize);
    if (mark.style() != Qt::NoBrush) {
        const bool same = row.background(ColName) == mark && row.background(ColHash) == mark;
        flags << (same ? names.value(mark.color().rgb(), u"?"_s) : u"mixed"_s);
    }
    return (row.isSelected() ? u"*"_s : QString()) +
           (flags.isEmpty() ? QString() : u'=' + flags.join(u','));
}

/// The rows below another; "/" after directories and, in parentheses, what is below these.
QString Scene::rows_of(const QTreeWidgetItem& parent) const
{
    QStringList rows;
    for (int i = 0; i < parent.childCount(); ++i) {
        const QTreeWidgetItem& row = *parent.child(i);
        const bool directory = row.type() == TypeDir && !is_way_up(&row);
        rows << name_of(row) + (directory ? u"/"_s : QString()) +
                    (row.childCount() > 0 ? u'(' + rows_of(row) + u')' : QString()) + flags_of(row);
    }
    return rows.join(u' ');
}

QString Scene::run(const QString& line)
{
    static const QHash<QString, Verb> all = verbs();
    if (const qsizetype end = line.indexOf(" ; "_L1); end > 0) {
        const QString seen = run(line.first(end));
        return (seen + u' ' + run(line.sliced(end + 3))).trimmed();
    }
    QStringList words = QProcess::splitCommand(line);
    const bool waits = !line.endsWith(u'&') && !words[0].endsWith(u'&');
    for (QString* word : {&words.first(), &words.last()}) {
        *word = word->endsWith(u'&') ? word->chopped(1) : *word;
    }
    const QString name = words.takeFirst();
    MyTreeWidget& pane = words.value(0) == "R"_L1 ? *second : *first;
    if (&pane == second || words.value(0) == "L"_L1) { words.removeFirst(); }
    if (!all.contains(name)) { return u"no such command"_s; }
    const QString answer = all[name](*this, pane, words);
    static const QStringList looks = {u"hold"_s, u"see"_s, u"label"_s, u"path"_s, u"overview"_s};
    if (waits && !looks.contains(name) && !wait_idle()) { return u"does not come to rest"_s; }
    steps_ = waits && name != "with"_L1 ? QStringList() : steps_;
    const QStringList seen = waits ? std::exchange(seen_, {}) : QStringList();
    return (QStringList(answer) + seen).join(u' ').trimmed();
}

QString Scene::violation() const
{
    if (is_busy()) { return {}; }
    for (MyTreeWidget* pane : {first, second}) {
        const bool open = pane->drive_combo->isEnabled() && pane->acceptDrops();
        if (!open || pane->progress->value() > 0) { return u"a pane's controls are not idle"_s; }
        QSet<const QTreeWidgetItem*> alive;
        for (QTreeWidgetItemIterator it(pane); *it; ++it) { alive.insert(*it); }
        if (!alive.contains(
                QSet<const QTreeWidgetItem*>(pane->job_items.begin(), pane->job_items.end()))) {
            return u"a list holds a dead row"_s;
        }
    }
    for (const auto* act : window->findChild<QToolBar*>()->actions()) {
        const bool view = act->text().startsWith("Vues"_L1);
        if (!view && !act->isEnabled()) { return u"the panes are idle, a command is disabled"_s; }
    }
    return named<QRadioButton>(*window, u"MD5"_s)->isEnabled() ? u""_s : u"no algorithm"_s;
}

QTreeWidgetItem* find_row(const MyTreeWidget& pane, const QString& name)
{
    QTreeWidgetItem* row = pane.invisibleRootItem();
    for (const QString& part : name.split(u'/')) {
        QTreeWidgetItem* next = nullptr;
        for (int i = 0; row && i < row->childCount() && !next; ++i) {
            next = row->child(i)->text(ColName) == part ? row->child(i) : nullptr;
        }
        row = next;
    }
    return row;
}

QString reference_digest(const QByteArray& bytes, QCryptographicHash::Algorithm algorithm)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, algorithm).toHex());
}
