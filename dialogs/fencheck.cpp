#include "dialogs/fencheck.h"

#include "dialogs/elided_label.h"
#include "dialogs/verdict_sign.h"

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int md5_digits = 32;
constexpr int sha1_digits = 40;

} // namespace

FenCheck::FenCheck(const QString& path, QWidget* parent) : QDialog(parent)
{
    create_widgets(path);
    make_connections();
    setWindowTitle(tr("Vérifier MD5/SHA1"));
    line_edit->setFocus();
}

void FenCheck::create_widgets(const QString& path)
{
    auto* path_label = new ElidedLabel(path);

    result_label = new ElidedLabel;
    result_label->hide();
    result_label->setIndent(20);
    // Grows with the dialog, as the verdict is what it is for.
    result_label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    result_label->setMinimumHeight(3 * result_label->fontMetrics().height());
    result_label->setStyleSheet(
        u"border: 1px solid black; padding: 20px; qproperty-alignment: AlignCenter;"_s);
    result_label->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* prompt = new QLabel(tr("Entrez le MD5/SHA1 : "));
    prompt->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    line_edit = new QLineEdit;
    line_edit->setStyleSheet(u"qproperty-alignment: AlignCenter;"_s);
    line_edit->setMinimumWidth(
        line_edit->fontMetrics().horizontalAdvance(QString(sha1_digits + 4, u'0')));
    prompt->setBuddy(line_edit);

    progress_bar = new QProgressBar;
    progress_bar->setValue(0);
    progress_bar->hide();

    check_button = new QPushButton(tr("Vérifier"));
    check_button->setDefault(true);
    check_button->setEnabled(false);
    cancel_button = new QPushButton(tr("Annuler"));
    auto* buttons = new QHBoxLayout;
    buttons->setAlignment(Qt::AlignRight);
    buttons->addWidget(check_button);
    buttons->addWidget(cancel_button);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(10);
    layout->addWidget(path_label);
    layout->addWidget(result_label);
    layout->addWidget(prompt);
    layout->addWidget(line_edit);
    layout->addWidget(progress_bar);
    layout->addLayout(buttons);
}

void FenCheck::make_connections()
{
    auto* copy_action = new QAction(tr("Copier"), result_label);
    result_label->addAction(copy_action);

    connect(line_edit, &QLineEdit::textEdited, this, &FenCheck::check_entry);
    connect(this, &FenCheck::entry_ok, check_button, &QPushButton::setEnabled);
    connect(check_button, &QPushButton::clicked, this, &FenCheck::check_clicked);
    connect(cancel_button, &QPushButton::clicked, this, &FenCheck::wait_close);
    connect(copy_action, &QAction::triggered, this, &FenCheck::cc);
}

QString FenCheck::entry_text() const
{
    return line_edit->text();
}

void FenCheck::set_check_enabled(bool enabled)
{
    check_button->setEnabled(enabled);
}

void FenCheck::set_progress_visible(bool visible)
{
    progress_bar->setVisible(visible);
}

void FenCheck::check_entry(QString entry)
{
    entry = entry.trimmed();
    if (entry.size() != md5_digits && entry.size() != sha1_digits) {
        emit entry_ok(false);
        return;
    }
    static const QRegularExpression digits(u"[0-9A-Fa-f]*"_s);
    const QRegularExpressionValidator validator(digits);
    int position = 0;
    emit entry_ok(validator.validate(entry, position) == QValidator::Acceptable);
}

void FenCheck::check_clicked()
{
    check_button->setEnabled(false);
    line_edit->setText(line_edit->text().trimmed());
    // Else the focus would pass to the cancel button, which a second Enter would press.
    setFocus();
    line_edit->setEnabled(false);
    emit calcul();
}

void FenCheck::progress(int value)
{
    progress_bar->setValue(value);
    progress_bar->show();
}

void FenCheck::handle_res(QString resultat)
{
    result_label->setText(resultat);
    result_label->show();

    disconnect(check_button, &QPushButton::clicked, this, &FenCheck::check_clicked);
    connect(check_button, &QPushButton::clicked, this, &QDialog::close);
    check_button->setText(tr("Ok"));

    show_verdict(line_edit->text().toLower() == resultat.toLower());
    // Last: a screen reader then finds the verdict on the button.
    check_button->setFocus();
}

/// By colour, by sign and to a screen reader.
void FenCheck::show_verdict(bool same)
{
    const QString colours = same ? u"background-color: green; color: white"_s
                                 : u"background-color: rgb(220, 70, 70); color: white"_s;
    result_label->setStyleSheet(colours);
    line_edit->setStyleSheet(colours);

    const QString verdict = (same ? QCoreApplication::translate("FenRes", " Tout est OK !")
                                  : QCoreApplication::translate("FenRes", " Il y a des erreurs."))
                                .trimmed();
    const QIcon sign = verdict_sign(same, Qt::white);
    result_label->set_sign(sign);
    line_edit->addAction(sign, QLineEdit::LeadingPosition)->setText(verdict);
    result_label->setAccessibleName(verdict + u' ' + result_label->text());
    line_edit->setAccessibleDescription(verdict);
    check_button->setAccessibleDescription(verdict);
    QAccessibleEvent alert(result_label, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void FenCheck::cc()
{
    QGuiApplication::clipboard()->setText(result_label->text());
}

void FenCheck::wait_close()
{
    emit finalise();
    close();
}

void FenCheck::reject()
{
    // The Escape key too must say that nobody waits any more, or the task would go on unseen.
    close();
}

void FenCheck::closeEvent(QCloseEvent* event)
{
    emit finalise();
    event->accept();
}
