// The pane's commands: actions, context menu and keys.

#include "engine/exclusions.h"
#include "platform/file_manager.h"
#include "tree/mytreewidget.h"
#include "tree/pane_row.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

QAction* make_action(QObject* parent, const QString& text, const QString& tip,
                     const QString& shortcut = {})
{
    auto* action = new QAction(text, parent);
    action->setStatusTip(tip);
    if (!shortcut.isEmpty()) {
        action->setShortcut(shortcut);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    }
    return action;
}

void add_submenu(QMenu& menu, const QString& title, const QList<QAction*>& actions)
{
    menu.addMenu(title)->addActions(actions);
}

} // namespace

void MyTreeWidget::create_actions()
{
    act_md5 = make_action(this, tr("MD5..."),
                          tr("Calcule le MD5 du (ou des) fichier(s) séléctionné(s)."), u"Ctrl+D"_s);
    act_md5_all =
        make_action(this, tr("MD5 de tous les fichiers"),
                    tr("Calcule le MD5 de tous les fichiers du répertoire."), u"Ctrl+Shift+D"_s);
    act_md5_file = make_action(this, tr("Créer fichier MD5"), tr("Crée un fichier .md5"));
    act_md5_dir_file = make_action(this, tr("Créer fichier MD5 du répertoire"),
                                   tr("Crée un fichier .md5 avec tous les fichiers du répertoire"));
    act_sha1 =
        make_action(this, tr("SHA1..."),
                    tr("Calcule le SHA1 du (ou des) fichier(s) séléctionné(s)."), u"Ctrl+S"_s);
    act_sha1_all =
        make_action(this, tr("SHA1 de tous les fichiers"),
                    tr("Calcule le SHA1 de tous les fichiers du répertoire."), u"Ctrl+Shift+S"_s);
    act_sha1_file = make_action(this, tr("Créer fichier SHA1"), tr("Crée un fichier .sha1"));
    act_sha1_dir_file =
        make_action(this, tr("Créer fichier SHA1 du répertoire"),
                    tr("Crée un fichier .sha1 avec tous les fichiers du répertoire"));
    act_check = make_action(this, tr("Vérifier MD5/SHA1"),
                            tr("Entrez un MD5/SHA1 pour le comparer à celui du fichier."));
    act_exclude = make_action(this, tr("Exclure ce type de fichier"),
                              tr("Exclure ce type de fichier lors de la comparaison."));
    act_include = make_action(this, tr("Inclure ce type de fichier"),
                              tr("Réinclure ce type de fichier lors de la comparaison."));
    act_explorer = make_action(this, tr("Ouvrir dans l'explorateur"),
                               tr("Ouvrir dans l'explorateur Windows."));
    act_autoscroll =
        make_action(this, tr("AutoScroll"),
                    tr("Désactivez pour gagner en rapidité lorsque le répertoire contient pleins "
                       "de (+ de 2500) petits fichiers."));
    act_autoscroll->setCheckable(true);
    addActions({act_md5, act_sha1, act_md5_all, act_sha1_all});
}

void MyTreeWidget::connect_actions()
{
    connect(act_md5, &QAction::triggered, this, &MyTreeWidget::HashThis);
    connect(act_md5_all, &QAction::triggered, this, &MyTreeWidget::HashDir);
    connect(act_md5_file, &QAction::triggered, this, &MyTreeWidget::cc_file);
    connect(act_md5_dir_file, &QAction::triggered, this, &MyTreeWidget::cc_all_file);
    connect(act_sha1, &QAction::triggered, this, &MyTreeWidget::HashThis);
    connect(act_sha1_all, &QAction::triggered, this, &MyTreeWidget::HashDir);
    connect(act_sha1_file, &QAction::triggered, this, &MyTreeWidget::cc_file);
    connect(act_sha1_dir_file, &QAction::triggered, this, &MyTreeWidget::cc_all_file);
    connect(act_check, &QAction::triggered, this, &MyTreeWidget::checksum);
    connect(act_explorer, &QAction::triggered, this, &MyTreeWidget::open_explorer);
    connect(act_autoscroll, &QAction::toggled, this, &MyTreeWidget::set_AutoScroll);
}

void MyTreeWidget::contextMenuEvent(QContextMenuEvent* event)
{
    const QTreeWidgetItem* row = currentItem();
    QMenu menu(this);
    if (row && row->type() != TypeFile) {
        add_submenu(menu, tr("MD5"), {act_md5});
        add_submenu(menu, tr("SHA1"), {act_sha1});
    } else if (row && row->treeWidget() && row->isSelected()) {
        const bool excluded = engine::is_excluded(exclusions, path_of(*row));
        act_exclude->setEnabled(!excluded);
        act_include->setEnabled(excluded);
        menu.setTitle(u"Tavrel"_s);
        add_submenu(menu, tr("MD5"), {act_md5, act_md5_all, act_md5_file, act_md5_dir_file});
        add_submenu(menu, tr("SHA1"), {act_sha1, act_sha1_all, act_sha1_file, act_sha1_dir_file});
        menu.addSeparator();
        menu.addAction(act_check);
        menu.addSeparator();
        menu.addActions({act_exclude, act_include});
        menu.addSeparator();
    } else {
        add_submenu(menu, tr("MD5"), {act_md5_all, act_md5_dir_file});
        add_submenu(menu, tr("SHA1"), {act_sha1_all, act_sha1_dir_file});
    }
    menu.addAction(act_explorer);
    menu.addSeparator();
    menu.addAction(act_autoscroll);
    menu.exec(event->globalPos());
    act_exclude->setEnabled(true);
    act_include->setEnabled(true);
}

void MyTreeWidget::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Backspace) {
        QTreeWidget::keyPressEvent(event);
        return;
    }
    if (is_way_up(topLevelItem(0))) {
        emit itemActivated(topLevelItem(0), 0);
    }
}

void MyTreeWidget::open_explorer()
{
    if (const QTreeWidgetItem* row = currentItem()) {
        platform::show_in_file_manager(path_of(*row));
    }
}

void MyTreeWidget::set_AutoScroll(bool on)
{
    if (on) {
        connect(this, &QTreeWidget::itemChanged, this, &MyTreeWidget::scrollitem);
    } else {
        disconnect(this, &QTreeWidget::itemChanged, this, &MyTreeWidget::scrollitem);
    }
}

void MyTreeWidget::scrollitem(QTreeWidgetItem* item, int /*column*/)
{
    setCurrentItem(item);
}

void MyTreeWidget::setopt(bool name, bool size, bool path, bool remember_dir, bool remember_view,
                          bool upper_case)
{
    ccname = name;
    ccsize = size;
    ccpath = path;
    rem_dir = remember_dir;
    rem_view = remember_view;
    upper = upper_case;
}
