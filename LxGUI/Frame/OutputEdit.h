#pragma once

class QLineEdit;

/// Makes a field one that only shows: disabled, but its text is as easy to read as that of an enabled one.
void MakeOutputEdit(QLineEdit *aEdit);
