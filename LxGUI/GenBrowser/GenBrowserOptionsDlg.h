#pragma once

#include <QtWidgets/QDialog>

#include "LxGUI/GenBrowser/GenBrowserOptions.h"

class QComboBox;

/// Lets the user choose names, view and refresh mode.
class GenBrowserOptionsDlg : public QDialog
{
    Q_OBJECT

public:
    GenBrowserOptionsDlg(const GenBrowserOptions &aOptions, QWidget *aParent);

    /// What was chosen when the dialog was accepted.
    const GenBrowserOptions &Options() const { return mOptions; }

    void accept() override;

public slots:
    void OnNamesComboChange(int aIndex);
    void OnViewComboChange(int aIndex);

private:
    GenBrowserOptions mOptions;
    QComboBox *mNamesCombo;
    QComboBox *mViewCombo;
    QComboBox *mRefreshCombo;
};
