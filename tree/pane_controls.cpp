#include "tree/pane_controls.h"

#include "dialogs/elided_label.h"
#include "platform/volumes.h"
#include "rows/icon_cache.h"

#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

QPushButton* make_button(const QString& icon)
{
    auto* button = new QPushButton(QIcon(icon), QString());
    button->setMaximumWidth(30);
    return button;
}

} // namespace

PaneControls::PaneControls()
    : drive_combo(new QComboBox), path_edit(new QLineEdit), status_label(new ElidedLabel),
      progress(new QProgressBar), stop_button(make_button(u":/res/close.png"_s)),
      reset_button(make_button(u":/res/reset.png"_s))
{
    const QList<platform::Volume> volumes = platform::volumes();
    for (const platform::Volume& volume : volumes) {
        drive_combo->addItem(IconCache::shared().drive(volume.root),
                             platform::volume_entry(volume));
    }
    path_edit->setTextMargins(5, 0, 0, 2);
    status_label->setText(drive_combo->currentText().left(3));
    status_label->setMaximumWidth(600);
    progress->setBaseSize(300, 50);
}
