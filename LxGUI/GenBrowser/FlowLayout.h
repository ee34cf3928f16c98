#pragma once

#include <QtWidgets/QLayout>
#include <memory>
#include <vector>

/// Puts widgets side by side, in as many rows as the width needs. The last one stands at the end of its row.
class FlowLayout : public QLayout
{
public:
    FlowLayout() = default;
    ~FlowLayout() override;

    void addItem(QLayoutItem *aItem) override;
    int count() const override;
    QLayoutItem *itemAt(int aIndex) const override;
    QLayoutItem *takeAt(int aIndex) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int aWidth) const override { return Arrange(QRect(0, 0, aWidth, 0), false); }
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect &aRect) override;

private:
    /// Places the items in a rectangle, or only computes. Returns the height that they need.
    int Arrange(const QRect &aRect, bool aPlace) const;
    int Gap() const;

    std::vector<std::unique_ptr<QLayoutItem>> mItems;
};
