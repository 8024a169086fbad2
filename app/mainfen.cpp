#include "app/mainfen.h"

#include "app/message_keeper.h"
#include "app/pair_marker.h"
#include "app/pane_access.h"
#include "app/run_overview.h"
#include "dialogs/cut_text_tips.h"
#include "dialogs/fenopt.h"
#include "tree/hash_job_controller.h"
#include "tree/mytreewidget.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// The paths that the program was started with. Relative ones are resolved now, against the
/// directory that the shell started it in; absolute ones stay as they were written.
QStringList path_arguments()
{
    QStringList paths = QCoreApplication::arguments().mid(1);
    for (QString& path : paths) {
        if (!path.isEmpty() && QDir::isRelativePath(path)) {
            path = QDir::toNativeSeparators(QDir::cleanPath(QDir::current().filePath(path)));
        }
    }
    return paths;
}

} // namespace

MainFen::MainFen()
{
    QStringList arguments = path_arguments();
    tree1 = new MyTreeWidget(this);
    tree2 = new MyTreeWidget(this);
    pair_marker = std::make_unique<PairMarker>(*tree1, *tree2);
    createActions();
    createMenus();
    createToolBars();
    statusBar()->show();
    message_keeper = new MessageKeeper(*this);
    createLayout();
    readSettings();
    setWindowTitle(u"Tavrel"_s);
    dispatch_arguments(arguments);
}

MainFen::~MainFen() = default;

void MainFen::dispatch_arguments(QStringList& arguments)
{
    connect(this, &MainFen::send_args, tree1, &MyTreeWidget::handle_args);
    if (!arguments.isEmpty()) {
        emit send_args(arguments);
    }
}

void MainFen::createActions()
{
    struct Row
    {
        QAction* MainFen::*action;
        const char* text;
        const char* icon;
        QKeySequence shortcut;
        const char* status_tip;
    };
    const Row rows[] = {
        {&MainFen::act_quit, QT_TR_NOOP("Quitter"), "close", QKeySequence(u"Ctrl+Q"_s), nullptr},
        {&MainFen::act_compare, QT_TR_NOOP("Comparer"), nullptr, QKeySequence(u"Ctrl+F"_s),
         QT_TR_NOOP("Compare les éléments sélectionnés.")},
        {&MainFen::act_compare_all, QT_TR_NOOP("Comparer Tout"), nullptr,
         QKeySequence(u"Ctrl+Shift+F"_s), QT_TR_NOOP("Compare tous les éléments.")},
        {&MainFen::act_about, QT_TR_NOOP("A Propos..."), nullptr, {}, nullptr},
        {&MainFen::act_copy, QT_TR_NOOP("Copier le resultat"), nullptr, QKeySequence::Copy,
         QT_TR_NOOP("Copie le résultat dans le Presse Papier")},
        {&MainFen::act_copy_all, QT_TR_NOOP("Copier tous les résultats"), nullptr,
         QKeySequence(u"Ctrl+Shift+C"_s),
         QT_TR_NOOP("Copie tous les résultat dans le Presse Papier")},
        {&MainFen::act_options, QT_TR_NOOP("Options..."), nullptr, {}, nullptr},
        {&MainFen::act_stop, QT_TR_NOOP("Stop"), "close", {}, nullptr},
        {&MainFen::act_reset, QT_TR_NOOP("Réinitialiser"), "reset", QKeySequence::Refresh,
         QT_TR_NOOP("Réinitialiser les vues.")},
        {&MainFen::act_horiz, QT_TR_NOOP("Vues Horizontales."), "horizontal", QKeySequence(u"F2"_s),
         QT_TR_NOOP("Vues Horizontales.")},
        {&MainFen::act_verti, QT_TR_NOOP("Vues Verticales."), "vertical", QKeySequence(u"F3"_s),
         QT_TR_NOOP("Vues Verticales.")},
    };
    for (const Row& row : rows) {
        auto* action = new QAction(tr(row.text), this);
        if (row.icon) {
            action->setIcon(QIcon(u":/res/%1.png"_s.arg(QLatin1StringView(row.icon))));
        }
        action->setShortcut(row.shortcut);
        if (row.status_tip) {
            action->setStatusTip(tr(row.status_tip));
        }
        this->*row.action = action;
    }
    connect_actions();
}

void MainFen::connect_actions()
{
    connect(act_quit, &QAction::triggered, qApp, &QCoreApplication::quit);
    connect_start(act_compare);
    connect_start(act_compare_all);
    connect(act_about, &QAction::triggered, this, &MainFen::Apropos);
    for (const MyTreeWidget* pane : {tree1, tree2}) {
        connect(act_copy, &QAction::triggered, pane, &MyTreeWidget::cc);
        connect(act_copy_all, &QAction::triggered, pane, &MyTreeWidget::ccAll);
        connect(act_stop, &QAction::triggered, pane->stop_button, &QPushButton::click);
    }
    connect(act_options, &QAction::triggered, this, &MainFen::createOptions);
    connect(act_reset, &QAction::triggered, this, &MainFen::reinitialiser);
    connect(act_horiz, &QAction::triggered, this, &MainFen::setSplitOrientHoriz);
    connect(act_verti, &QAction::triggered, this, &MainFen::setSplitOrientVerti);
}

void MainFen::createMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&Fichier"));
    file->addAction(act_compare);
    file->addAction(act_compare_all);
    file->addSeparator();
    file->addAction(act_quit);

    QMenu* edit = menuBar()->addMenu(tr("&Edition"));
    edit->addAction(act_copy);
    edit->addAction(act_copy_all);
    edit->addSeparator();
    edit->addAction(act_options);

    QMenu* view = menuBar()->addMenu(tr("Fe&nêtre"));
    view->addAction(act_horiz);
    view->addAction(act_verti);

    menuBar()->addMenu(u"?"_s)->addAction(act_about);
}

void MainFen::createToolBars()
{
    toolbar = addToolBar(u"Main"_s);
    // The window's only menu of its own would hide the tool bar, and nothing would bring it back.
    setContextMenuPolicy(Qt::NoContextMenu);
    radio_md5 = new QRadioButton(u"MD5"_s);
    radio_md5->setChecked(true);
    radio_sha1 = new QRadioButton(u"SHA1"_s);
    for (QRadioButton* radio : {radio_md5, radio_sha1}) {
        radio->setAccessibleDescription(u"MD5/SHA1"_s);
    }
    toolbar->addWidget(radio_md5);
    toolbar->addWidget(radio_sha1);
    for (QAction* action : {act_compare, act_compare_all, act_stop, act_reset}) {
        toolbar->addSeparator();
        toolbar->addAction(action);
    }

    // Pushes what follows to the right end.
    auto* spacer = new QWidget(this);
    auto* row = new QHBoxLayout(spacer);
    row->addSpacerItem(new QSpacerItem(2000, 0, QSizePolicy::Maximum, QSizePolicy::Expanding));
    toolbar->addWidget(spacer);

    toolbar->addSeparator();
    toolbar->addAction(act_horiz);
    toolbar->addAction(act_verti);
}

QWidget* MainFen::create_pane_container(MyTreeWidget& pane)
{
    // Buttons without text say what they do by the texts of the actions that do the same.
    pane.stop_button->setToolTip(act_stop->text());
    pane.reset_button->setToolTip(act_reset->text());
    name_controls(pane, &pane == tree1 ? 1 : 2);
    show_cut_texts_as_tips(pane);
    show_current_row(pane);

    auto* container = new QWidget(this);
    auto* column = new QVBoxLayout;
    auto* row = new QHBoxLayout;
    row->addWidget(pane.drive_combo);
    row->addWidget(pane.path_edit);
    row->addWidget(pane.reset_button);
    row->addWidget(pane.stop_button);
    column->addLayout(row);
    column->addWidget(&pane);
    column->addWidget(pane.status_label);
    column->addWidget(pane.progress);
    container->setLayout(column);
    return container;
}

void MainFen::createLayout()
{
    splitter = new QSplitter(this);
    splitter->addWidget(create_pane_container(*tree1));
    splitter->addWidget(create_pane_container(*tree2));
    // Pane by pane: the rule for all of them would be overruled by a saved state.
    splitter->setCollapsible(0, false);
    splitter->setCollapsible(1, false);
    restore_view_layout();
    setCentralWidget(splitter);
    createOverview();
    order_tabs(*tree1);
    QWidget::setTabOrder(tree1, tree2->drive_combo);
    order_tabs(*tree2);
    tree1->setFocus();
    make_connections();
    connect(this, &MainFen::alldone, overview, &RunOverview::count_marks);
}

void MainFen::createOverview()
{
    const auto pane = [](MyTreeWidget* rows) {
        return RunOverview::Pane{rows, [rows] {
                                     return RunOverview::Progress{rows->job_running(),
                                                                  rows->jobs().files_done(),
                                                                  rows->jobs().files_total()};
                                 }};
    };
    overview = new RunOverview(pane(tree1), pane(tree2), this);
    statusBar()->addPermanentWidget(overview);
    for (MyTreeWidget* rows : {tree1, tree2}) {
        connect(&rows->job_watcher, &QFutureWatcherBase::started, overview,
                &RunOverview::follow_jobs);
        connect(rows->reset_button, &QPushButton::clicked, overview, &RunOverview::forget_marks);
    }
    connect(act_reset, &QAction::triggered, overview, &RunOverview::forget_marks);
}

void MainFen::make_connections()
{
    connect(tree1->act_exclude, &QAction::triggered, this, &MainFen::add_exclus);
    connect(tree2->act_exclude, &QAction::triggered, this, &MainFen::add_exclus);
    connect(tree1->act_include, &QAction::triggered, this, &MainFen::rem_exclus);
    connect(tree2->act_include, &QAction::triggered, this, &MainFen::rem_exclus);
    connect(radio_md5, &QRadioButton::toggled, tree1, &MyTreeWidget::changeHeaderMD5);
    connect(radio_md5, &QRadioButton::toggled, tree2, &MyTreeWidget::changeHeaderMD5);
    connect(radio_sha1, &QRadioButton::toggled, tree1, &MyTreeWidget::changeHeaderSHA1);
    connect(radio_sha1, &QRadioButton::toggled, tree2, &MyTreeWidget::changeHeaderSHA1);
    connect(this, &MainFen::alldone, this, &MainFen::reactiveAll);
    connect(this, &MainFen::alldone, this, &MainFen::results);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &MainFen::writeSettings);
    connect(&tree1->job_watcher, &QFutureWatcherBase::finished, this, &MainFen::compare);
    connect(&tree2->job_watcher, &QFutureWatcherBase::finished, this, &MainFen::compare);
}

// The start comes first and the disabling second: a trigger starts one run, and disableAll() cuts
// whatever further connections there are before they are reached.
void MainFen::connect_start(QAction* action)
{
    connect(action, &QAction::triggered, this, &MainFen::reinitialiser_lancer);
    connect(action, &QAction::triggered, this, &MainFen::disableAll);
}

void MainFen::disableAll()
{
    for (const QAction* action : {act_compare, act_compare_all}) {
        disconnect(action, &QAction::triggered, this, &MainFen::disableAll);
        disconnect(action, &QAction::triggered, this, &MainFen::reinitialiser_lancer);
    }
    radio_md5->setEnabled(false);
    radio_sha1->setEnabled(false);
    act_reset->setEnabled(false);
    act_compare->setEnabled(false);
    act_compare_all->setEnabled(false);
}

void MainFen::reactiveAll()
{
    radio_md5->setEnabled(true);
    radio_sha1->setEnabled(true);
    act_reset->setEnabled(true);
    act_compare->setEnabled(true);
    act_compare_all->setEnabled(true);
    connect_start(act_compare);
    connect_start(act_compare_all);
}

void MainFen::setMD5()
{
    radio_md5->setChecked(true);
    radio_md5->setEnabled(false);
    radio_sha1->setEnabled(false);
}

void MainFen::setSHA1()
{
    radio_sha1->setChecked(true);
    radio_md5->setEnabled(false);
    radio_sha1->setEnabled(false);
}

void MainFen::reinitialiser()
{
    tree1->list_anew();
    tree2->list_anew();
}

void MainFen::setSplitOrientHoriz()
{
    splitter->setOrientation(Qt::Horizontal);
    act_horiz->setEnabled(false);
    act_verti->setEnabled(true);
}

void MainFen::setSplitOrientVerti()
{
    splitter->setOrientation(Qt::Vertical);
    act_horiz->setEnabled(true);
    act_verti->setEnabled(false);
}

void MainFen::createOptions()
{
    fen_opt = new FenOpt(this);
    fen_opt->set_name(tree1->ccname);
    fen_opt->set_size(tree1->ccsize);
    fen_opt->set_path(tree1->ccpath);
    fen_opt->set_upper(tree1->upper);
    fen_opt->set_rem_dir(tree1->rem_dir);
    fen_opt->set_rem_view(tree1->rem_view);
    fen_opt->set_lang(lang);
    fen_opt->set_exclus(tree1->exclusions);
    connect(fen_opt, &FenOpt::opt, tree1, &MyTreeWidget::setopt);
    connect(fen_opt, &FenOpt::opt, tree2, &MyTreeWidget::setopt);
    connect(fen_opt, &FenOpt::lang, this, &MainFen::setLang);
    connect(fen_opt, &FenOpt::exclusion, tree1, &MyTreeWidget::set_exclus);
    connect(fen_opt, &FenOpt::exclusion, tree2, &MyTreeWidget::set_exclus);
    fen_opt->exec();
    delete fen_opt;
}
