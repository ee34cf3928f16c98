#pragma once

class QColor;
class QModelIndex;

/// The colour in which the text of a cell is painted: the one that the model gives, where it can be read. A palette may
/// be such that it cannot, as the grounds of selectors and of what they select are the same in all palettes, and as the
/// grey of a dark palette is darker than its ground. Grey text stays paler than other text.
QColor CellTextColor(const QModelIndex &aIndex);
