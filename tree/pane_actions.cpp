#include "tree/pane_actions.h"

#include "engine/exclusions.h"
#include "rows/pane_row.h"
#include "tree/mytreewidget.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

struct ActionDefinition
{
    QAction* PaneActions::*action;
    const char* text;
    const char* tip;
    QLatin1StringView shortcut = {};
};

constexpr ActionDefinition definitions[] = {
    {&PaneActions::act_md5, QT_TRANSLATE_NOOP("MyTreeWidget", "MD5..."),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Calcule le MD5 du (ou des) fichier(s) séléctionné(s)."),
     "Ctrl+D"_L1},
    {&PaneActions::act_md5_all, QT_TRANSLATE_NOOP("MyTreeWidget", "MD5 de tous les fichiers"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Calcule le MD5 de tous les fichiers du répertoire."),
     "Ctrl+Shift+D"_L1},
    {&PaneActions::act_md5_file, QT_TRANSLATE_NOOP("MyTreeWidget", "Créer fichier MD5"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Crée un fichier .md5")},
    {&PaneActions::act_md5_dir_file,
     QT_TRANSLATE_NOOP("MyTreeWidget", "Créer fichier MD5 du répertoire"),
     QT_TRANSLATE_NOOP("MyTreeWidget",
                       "Crée un fichier .md5 avec tous les fichiers du répertoire")},
    {&PaneActions::act_sha1, QT_TRANSLATE_NOOP("MyTreeWidget", "SHA1..."),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Calcule le SHA1 du (ou des) fichier(s) séléctionné(s)."),
     "Ctrl+S"_L1},
    {&PaneActions::act_sha1_all, QT_TRANSLATE_NOOP("MyTreeWidget", "SHA1 de tous les fichiers"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Calcule le SHA1 de tous les fichiers du répertoire."),
     "Ctrl+Shift+S"_L1},
    {&PaneActions::act_sha1_file, QT_TRANSLATE_NOOP("MyTreeWidget", "Créer fichier SHA1"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Crée un fichier .sha1")},
    {&PaneActions::act_sha1_dir_file,
     QT_TRANSLATE_NOOP("MyTreeWidget", "Créer fichier SHA1 du répertoire"),
     QT_TRANSLATE_NOOP("MyTreeWidget",
                       "Crée un fichier .sha1 avec tous les fichiers du répertoire")},
    {&PaneActions::act_check, QT_TRANSLATE_NOOP("MyTreeWidget", "Vérifier MD5/SHA1"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Entrez un MD5/SHA1 pour le comparer à celui du fichier.")},
    {&PaneActions::act_exclude, QT_TRANSLATE_NOOP("MyTreeWidget", "Exclure ce type de fichier"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Exclure ce type de fichier lors de la comparaison.")},
    {&PaneActions::act_include, QT_TRANSLATE_NOOP("MyTreeWidget", "Inclure ce type de fichier"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Réinclure ce type de fichier lors de la comparaison.")},
    {&PaneActions::act_explorer, QT_TRANSLATE_NOOP("MyTreeWidget", "Ouvrir dans l'explorateur"),
     QT_TRANSLATE_NOOP("MyTreeWidget", "Ouvrir dans l'explorateur Windows.")},
    {&PaneActions::act_autoscroll, QT_TRANSLATE_NOOP("MyTreeWidget", "AutoScroll"),
     QT_TRANSLATE_NOOP("MyTreeWidget",
                       "Désactivez pour gagner en rapidité lorsque le répertoire contient pleins "
                       "de (+ de 2500) petits fichiers.")},
};

void add_submenu(QMenu& menu, const QString& title, const QList<QAction*>& actions)
{
    menu.addMenu(title)->addActions(actions);
}

void add_file_commands(QMenu& menu, const MyTreeWidget& pane)
{
    menu.setTitle(u"Tavrel"_s);
    add_submenu(menu, MyTreeWidget::tr("MD5"),
                {pane.act_md5, pane.act_md5_all, pane.act_md5_file, pane.act_md5_dir_file});
    add_submenu(menu, MyTreeWidget::tr("SHA1"),
                {pane.act_sha1, pane.act_sha1_all, pane.act_sha1_file, pane.act_sha1_dir_file});
    menu.addSeparator();
    menu.addAction(pane.act_check);
    menu.addSeparator();
    menu.addActions({pane.act_exclude, pane.act_include});
    menu.addSeparator();
}

} // namespace

void PaneActions::create_actions(QObject* parent)
{
    for (const ActionDefinition& definition : definitions) {
        auto* action = new QAction(MyTreeWidget::tr(definition.text), parent);
        action->setStatusTip(MyTreeWidget::tr(definition.tip));
        if (!definition.shortcut.isEmpty()) {
            action->setShortcut(QString(definition.shortcut));
            action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        }
        this->*definition.action = action;
    }
    act_autoscroll->setCheckable(true);
}

void show_context_menu(MyTreeWidget& pane, const QContextMenuEvent& event)
{
    const QTreeWidgetItem* row = pane.currentItem();
    QMenu menu(&pane);
    if (row && row->type() != TypeFile) {
        add_submenu(menu, MyTreeWidget::tr("MD5"), {pane.act_md5});
        add_submenu(menu, MyTreeWidget::tr("SHA1"), {pane.act_sha1});
    } else if (row && row->isSelected()) {
        const bool excluded = engine::is_excluded(pane.exclusions, path_of(*row));
        pane.act_exclude->setEnabled(!excluded);
        pane.act_include->setEnabled(excluded);
        add_file_commands(menu, pane);
    } else {
        add_submenu(menu, MyTreeWidget::tr("MD5"), {pane.act_md5_all, pane.act_md5_dir_file});
        add_submenu(menu, MyTreeWidget::tr("SHA1"), {pane.act_sha1_all, pane.act_sha1_dir_file});
    }
    menu.addAction(pane.act_explorer);
    menu.addSeparator();
    menu.addAction(pane.act_autoscroll);
    menu.exec(event.globalPos());
    pane.act_exclude->setEnabled(true);
    pane.act_include->setEnabled(true);
}
