#include "tree/row_disposal.h"

#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QTimer>
#include <QTreeWidget>

#include <utility>

namespace {

// Looked at after every so many rows, a slice ends in time for the next frame.
constexpr int rows_per_look = 100;
constexpr int slice_ms = 2;

class RowDisposal final : public QObject
{
  public:
    RowDisposal(QList<QTreeWidgetItem*> rows, QObject* parent)
        : QObject(parent), rows_(std::move(rows))
    {
        connect(&next_slice_, &QTimer::timeout, this, &RowDisposal::delete_slice);
        next_slice_.start(0);
    }
    ~RowDisposal() override { qDeleteAll(rows_); }
    Q_DISABLE_COPY_MOVE(RowDisposal)

  private:
    void delete_slice()
    {
        QElapsedTimer slice;
        slice.start();
        do {
            for (int i = 0; i < rows_per_look && !rows_.isEmpty(); ++i) {
                delete rows_.takeLast();
            }
        } while (!rows_.isEmpty() && !slice.hasExpired(slice_ms));
        if (rows_.isEmpty()) {
            next_slice_.stop();
            deleteLater();
        }
    }

    QList<QTreeWidgetItem*> rows_;
    QTimer next_slice_;
};

} // namespace

void dispose_of_rows(QTreeWidget& tree)
{
    tree.selectionModel()->clear();
    QList<QTreeWidgetItem*> rows = tree.invisibleRootItem()->takeChildren();
    tree.clear(); // costs nothing now, and resets the view as ever
    if (!rows.isEmpty()) {
        new RowDisposal(std::move(rows), &tree);
    }
}
