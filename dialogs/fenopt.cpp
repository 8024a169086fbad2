#include "dialogs/fenopt.h"

#include "dialogs/shell_association.h"
#include "engine/exclusions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

FenOpt::FenOpt(QWidget* parent) : QDialog(parent)
{
    // Widgets are made from top to bottom: that is the order in which Tab walks through them.
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(create_general_group());
    create_copy_group();
    layout->addWidget(copy_group);
    layout->addWidget(create_exclusion_group());
    layout->addWidget(create_language_group());

    auto* association_text = new QHBoxLayout;
    association_text->setAlignment(Qt::AlignCenter);
    association_text->addWidget(
        new QLabel(tr("Associer les types de fichiers .md5 .sha1 au programme.")));
    layout->addLayout(association_text);

    auto* associate_button = new QPushButton(tr("Associer"));
    auto* dissociate_button = new QPushButton(tr("Dissocier"));
    auto* association_buttons = new QHBoxLayout;
    association_buttons->setAlignment(Qt::AlignCenter);
    association_buttons->addWidget(associate_button);
    association_buttons->addWidget(dissociate_button);
    layout->addLayout(association_buttons);

    auto* save_button = new QPushButton(tr("Sauver"));
    // Without this, Enter in a text line would press the first button, which registers the program.
    save_button->setDefault(true);
    auto* cancel_button = new QPushButton(tr("Annuler"));
    auto* buttons = new QHBoxLayout;
    buttons->setAlignment(Qt::AlignRight);
    buttons->addWidget(save_button);
    buttons->addWidget(cancel_button);
    layout->addLayout(buttons);

    connect(associate_button, &QPushButton::clicked, this, &FenOpt::set_assoc);
    connect(dissociate_button, &QPushButton::clicked, this, &FenOpt::rem_assoc);
    connect(cancel_button, &QPushButton::clicked, this, &QDialog::reject);
    connect(save_button, &QPushButton::clicked, this, &FenOpt::save);

    layout->setSizeConstraint(QLayout::SetFixedSize);
    setWindowTitle(tr("Options..."));
}

QGroupBox* FenOpt::create_general_group()
{
    auto* group = new QGroupBox(tr("Général"));
    cb_upper = new QCheckBox(tr("Résultats tout en majuscule"));
    cb_rem_dir = new QCheckBox(tr("Sauvegarder les répertoires courants en quittant."));
    cb_rem_view = new QCheckBox(tr("Sauvegarder l'agencement des vues en quittant."));

    auto* layout = new QVBoxLayout(group);
    layout->addWidget(cb_upper);
    layout->addWidget(cb_rem_dir);
    layout->addWidget(cb_rem_view);
    return group;
}

void FenOpt::create_copy_group()
{
    copy_group = new QGroupBox(tr("Option Copier/Coller"));
    cb_name = new QCheckBox(tr("Nom"));
    cb_path = new QCheckBox(tr("Chemin"));
    cb_size = new QCheckBox(tr("Taille"));
    cb_hash = new QCheckBox(u"MD5/SHA1"_s);
    cb_hash->setChecked(true);
    cb_hash->setEnabled(false);

    auto* layout = new QHBoxLayout(copy_group);
    layout->setAlignment(Qt::AlignLeft);
    for (QCheckBox* box : {cb_name, cb_path, cb_size, cb_hash}) {
        layout->addWidget(box);
    }
}

QGroupBox* FenOpt::create_exclusion_group()
{
    auto* group = new QGroupBox(tr("Fichiers à exclure"));
    exclu_edit = new QLineEdit;
    exclu_edit->setAccessibleName(group->title());
    auto* hint = new QLabel(
        tr("Séparez chaque extension avec le caractère ';'. (Exemple : *.jpg;tmp;*.dat)"));
    hint->setEnabled(false);

    auto* layout = new QVBoxLayout(group);
    layout->addWidget(exclu_edit);
    layout->addWidget(hint);
    return group;
}

QGroupBox* FenOpt::create_language_group()
{
    auto* group = new QGroupBox(tr("Langue"));
    lang_combo = new QComboBox;
    lang_combo->setAccessibleName(group->title());
    lang_combo->addItem(u"Français"_s);
    lang_combo->addItem(u"English"_s);

    auto* layout = new QHBoxLayout(group);
    layout->setAlignment(Qt::AlignLeft);
    layout->addWidget(lang_combo);
    return group;
}

void FenOpt::set_name(bool on)
{
    cb_name->setChecked(on);
}

void FenOpt::set_size(bool on)
{
    cb_size->setChecked(on);
}

void FenOpt::set_path(bool on)
{
    cb_path->setChecked(on);
}

void FenOpt::set_upper(bool on)
{
    cb_upper->setChecked(on);
}

void FenOpt::set_rem_dir(bool on)
{
    cb_rem_dir->setChecked(on);
}

void FenOpt::set_rem_view(bool on)
{
    cb_rem_view->setChecked(on);
}

void FenOpt::set_lang(const QString& code)
{
    lang_combo->setCurrentIndex(code == "en"_L1 ? 1 : 0);
}

void FenOpt::set_exclus(const QStringList& suffixes)
{
    exclu_edit->setText(engine::format_exclusions(suffixes));
}

void FenOpt::save()
{
    emit opt(cb_name->isChecked(), cb_size->isChecked(), cb_path->isChecked(),
             cb_rem_dir->isChecked(), cb_rem_view->isChecked(), cb_upper->isChecked());
    // The names of the languages are the same in every language and begin with their code.
    emit lang(lang_combo->currentText().toLower().left(2));
    emit exclusion(exclu_edit->text());
    close();
}

void FenOpt::set_assoc()
{
    shell_association::associate(QCoreApplication::applicationFilePath(),
                                 tr("&Vérifier le checksum..."));
}

void FenOpt::rem_assoc()
{
    shell_association::dissociate();
}
