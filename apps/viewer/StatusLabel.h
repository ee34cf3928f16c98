#pragma once

#include <QtWidgets/QLabel>

/// One line of text in the status bar that gives way where there is no room: it is shown with an ellipsis, and whole in
/// the tool tip.
class StatusLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// Whether not all of the text is shown.
    bool IsElided() const;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *aEvent) override;
    void paintEvent(QPaintEvent *aEvent) override;
};
