#pragma once

class DisplayWnd;
class QWidget;

/// Has assistive technology take the widget of a display for a picture and tell what it shows. The widget keeps this
/// when the display has gone, and is then described as empty.
void MakePictureAccessible(QWidget *aWidget, DisplayWnd *aDisplay);
