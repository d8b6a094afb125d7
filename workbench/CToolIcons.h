#pragma once
#include <QIcon>

// The toolbar's 17 x 16 button images, drawn rather than shipped as files.
class CToolIcons
{
public:
    static QIcon Icon(int commandId);
    // The application's icon for the title bar.
    static QIcon AppIcon();
};
