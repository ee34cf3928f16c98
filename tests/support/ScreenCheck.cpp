#include "ScreenCheck.h"

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>
#include <QtWidgets/QTableWidget>

namespace
{

class Check
{
public:
    explicit Check(const QWidget &aWindow) : mWindow(aWindow) {}

    QStringList Run()
    {
        for (const QWidget *widget : mWindow.findChildren<QWidget *>()) {
            if (!widget->isVisibleTo(&mWindow) || widget->window() != mWindow.window()) {
                continue;
            }
            if (const auto *label = qobject_cast<const QLabel *>(widget)) {
                CheckLabel(*label);
            }
            else if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
                CheckButton(*button);
            }
            else if (const auto *edit = qobject_cast<const QLineEdit *>(widget)) {
                CheckEdit(*edit);
            }
            else if (const auto *combo = qobject_cast<const QComboBox *>(widget)) {
                CheckCombo(*combo);
            }
            else if (const auto *group = qobject_cast<const QGroupBox *>(widget)) {
                Expect(*group, group->title(), TextSize(*group, group->title()), group->size());
            }
            else if (const auto *header = qobject_cast<const QHeaderView *>(widget)) {
                CheckHeader(*header);
            }
            else if (const auto *table = qobject_cast<const QTableWidget *>(widget)) {
                CheckTable(*table);
            }
            if (IsControl(*widget)) {
                CheckPlace(*widget);
            }
        }
        return mFound;
    }

private:
    static QSize TextSize(const QWidget &aWidget, const QString &aText)
    {
        return aWidget.fontMetrics().size(Qt::TextShowMnemonic, aText);
    }

    static bool IsControl(const QWidget &aWidget)
    {
        const QWidget *parent = aWidget.parentWidget();
        if (qobject_cast<const QAbstractScrollArea *>(parent) || qobject_cast<const QComboBox *>(parent) ||
            qobject_cast<const QAbstractSpinBox *>(parent) || qobject_cast<const QLineEdit *>(parent) ||
            parent->inherits("QDockWidget") || parent->inherits("QTabBar") ||
            (parent->parentWidget() && qobject_cast<const QAbstractScrollArea *>(parent->parentWidget())))
        {
            return false;  // placed by the toolkit
        }
        return qobject_cast<const QLabel *>(&aWidget) || qobject_cast<const QAbstractButton *>(&aWidget) ||
               qobject_cast<const QLineEdit *>(&aWidget) || qobject_cast<const QComboBox *>(&aWidget) ||
               qobject_cast<const QAbstractScrollArea *>(&aWidget) || qobject_cast<const QGroupBox *>(&aWidget);
    }

    void Report(const QWidget &aWidget, const QString &aText, const QString &aWhat)
    {
        mFound << QStringLiteral("%1 \"%2\" (%3): %4")
                      .arg(QLatin1String(aWidget.metaObject()->className()), aText, aWidget.objectName(), aWhat);
    }

    void Expect(const QWidget &aWidget, const QString &aText, const QSize &aNeeded, const QSize &aGiven)
    {
        if (aNeeded.width() > aGiven.width() || aNeeded.height() > aGiven.height()) {
            Report(aWidget, aText,
                   QStringLiteral("needs %1 x %2, has %3 x %4")
                       .arg(aNeeded.width())
                       .arg(aNeeded.height())
                       .arg(aGiven.width())
                       .arg(aGiven.height()));
        }
    }

    void CheckLabel(const QLabel &aLabel)
    {
        if (aLabel.text().isEmpty()) {
            return;
        }
        const QSize given = aLabel.contentsRect().size();
        if (aLabel.wordWrap()) {
            Expect(aLabel, aLabel.text(), QSize(0, aLabel.heightForWidth(aLabel.width())), aLabel.size());
        }
        else {
            QSize needed = TextSize(aLabel, aLabel.text());
            if (aLabel.minimumSizeHint().width() == 0) {
                needed.setWidth(0);  // it shows an ellipsis
            }
            Expect(aLabel, aLabel.text(), needed, given);
        }
    }

    void CheckButton(const QAbstractButton &aButton)
    {
        if (aButton.text().isEmpty()) {
            return;
        }
        QStyleOptionButton option;
        option.initFrom(&aButton);
        QRect given = aButton.rect().adjusted(2, 2, -2, -2);
        if (qobject_cast<const QCheckBox *>(&aButton)) {
            given = aButton.style()->subElementRect(QStyle::SE_CheckBoxContents, &option, &aButton);
        }
        else if (qobject_cast<const QRadioButton *>(&aButton)) {
            given = aButton.style()->subElementRect(QStyle::SE_RadioButtonContents, &option, &aButton);
        }
        Expect(aButton, aButton.text(), TextSize(aButton, aButton.text()), given.size());
    }

    void CheckEdit(const QLineEdit &aEdit)
    {
        QStyleOptionFrame option;
        option.initFrom(&aEdit);
        option.lineWidth =
            aEdit.hasFrame() ? aEdit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &aEdit) : 0;
        const QRect given = aEdit.style()->subElementRect(QStyle::SE_LineEditContents, &option, &aEdit);
        // what a user types, and paths, may be longer than any field
        const bool isPath = aEdit.text().contains(QLatin1Char('/'));
        const int width = isPath ? 0 : aEdit.fontMetrics().horizontalAdvance(aEdit.text());
        Expect(aEdit, aEdit.text(), QSize(width, aEdit.fontMetrics().height()), given.size());
    }

    void CheckCombo(const QComboBox &aCombo)
    {
        QStyleOptionComboBox option;
        option.initFrom(&aCombo);
        option.editable = aCombo.isEditable();
        const QRect given =
            aCombo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &aCombo);
        // identifiers may be longer than any box, which then says so by its policy
        const bool isCut = aCombo.sizeAdjustPolicy() == QComboBox::AdjustToMinimumContentsLengthWithIcon;
        const int width = isCut ? 0 : aCombo.fontMetrics().horizontalAdvance(aCombo.currentText());
        Expect(aCombo, aCombo.currentText(), QSize(width, aCombo.fontMetrics().height()), given.size());
    }

    void CheckHeader(const QHeaderView &aHeader)
    {
        for (int i = 0; i < aHeader.count() && aHeader.model(); ++i) {
            const QString text = aHeader.model()->headerData(i, aHeader.orientation()).toString();
            if (!text.isEmpty() && !aHeader.isSectionHidden(i)) {
                Expect(aHeader, text, QSize(aHeader.sectionSizeHint(i), 0), QSize(aHeader.sectionSize(i), 0));
            }
        }
    }

    void CheckTable(const QTableWidget &aTable)
    {
        for (int row = 0; row < aTable.rowCount(); ++row) {
            Expect(aTable, QStringLiteral("row %1").arg(row), QSize(0, aTable.fontMetrics().height()),
                   QSize(0, aTable.rowHeight(row)));
        }
    }

    void CheckPlace(const QWidget &aWidget)
    {
        const QWidget &parent = *aWidget.parentWidget();
        if (!parent.rect().contains(aWidget.geometry())) {
            Report(aWidget, aWidget.property("text").toString(), QStringLiteral("reaches out of its parent"));
        }
        for (const QObject *child : parent.children()) {
            const auto *other = qobject_cast<const QWidget *>(child);
            if (other && other != &aWidget && other->isVisibleTo(&mWindow) && IsControl(*other) &&
                other->geometry().intersects(aWidget.geometry()))
            {
                Report(aWidget, aWidget.property("text").toString(),
                       QStringLiteral("covers %1").arg(other->objectName()));
            }
        }
    }

    const QWidget &mWindow;
    QStringList mFound;
};

}  // namespace

QStringList FindUnreadable(const QWidget &aWindow)
{
    return Check(aWindow).Run();
}
