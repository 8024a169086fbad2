#pragma once

#include <QIcon>
#include <QLabel>

/// One line of plain text that may hold a long path.
///
/// It claims a moderate width only, so that no window grows with its text, takes the room there is,
/// and leaves out the middle of what does not fit, which the tool tip then shows whole. text()
/// stays whole. Lives in the GUI thread.
class ElidedLabel final : public QLabel
{
  public:
    explicit ElidedLabel(const QString& text = {});

    /// Shows a sign before the text; a null icon takes it away.
    void set_sign(const QIcon& sign);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString shown_text() const;
    QSize at_most(int characters) const;
    int sign_width() const;

    QIcon sign_;
};
