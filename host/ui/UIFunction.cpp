#include "UIFunction.h"

#include "CUIServices.h"

namespace UIFunction {

int QXMessageBox(const QString& text, const QString& caption, unsigned style)
{
    return CUIServices::Current().MessageBox(text, caption, style);
}

} // namespace UIFunction
