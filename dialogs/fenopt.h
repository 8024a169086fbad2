#pragma once

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;

/// Edits the options of the panes, the language and the exclusions.
///
/// It stores nothing: whoever opens it fills it through the setters, and "Sauver" sends the values
/// out by the three signals, in the order in which they are declared. Lives in the GUI thread.
class FenOpt : public QDialog
{
    Q_OBJECT

  public:
    explicit FenOpt(QWidget* parent);

    void set_name(bool on);
    void set_size(bool on);
    void set_path(bool on);
    void set_upper(bool on);
    void set_rem_dir(bool on);
    void set_rem_view(bool on);

    /// Takes a language code: "en" is English, any other French.
    void set_lang(const QString& code);

    /// Takes bare suffixes, as a pane keeps them.
    void set_exclus(const QStringList& suffixes);

  signals:
    void opt(bool name, bool size, bool path, bool remember_dir, bool remember_view,
             bool upper_case);
    void lang(QString code);      ///< "fr" or "en", sent whether it changed or not
    void exclusion(QString text); ///< the text as typed

  protected slots:
    void save();
    void set_assoc();
    void rem_assoc();

  private:
    QGroupBox* create_general_group();
    QGroupBox* create_exclusion_group();
    QGroupBox* create_language_group();
    void create_copy_group();

    QGroupBox* copy_group = nullptr;
    QCheckBox* cb_name = nullptr;
    QCheckBox* cb_size = nullptr;
    QCheckBox* cb_path = nullptr;
    QCheckBox* cb_upper = nullptr;
    QCheckBox* cb_rem_dir = nullptr;
    QCheckBox* cb_rem_view = nullptr;
    QCheckBox* cb_hash = nullptr;
    QComboBox* lang_combo = nullptr;
    QLineEdit* exclu_edit = nullptr;
};
