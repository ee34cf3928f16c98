#pragma once

class QDialog;
class QHBoxLayout;
class QPushButton;

/// The row "OK", "Cancel" at the right end of a dialog. They accept and reject it; Enter is "OK".
struct DialogButtons
{
    explicit DialogButtons(QDialog *aDialog);

    QHBoxLayout *mLayout;  ///< To be added to the dialog's layout.
    QPushButton *mOK;
    QPushButton *mCancel;
};
