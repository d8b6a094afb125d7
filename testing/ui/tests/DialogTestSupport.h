#pragma once
#include "CGridCtrlForDataSet.h"
#include "ModalScript.h"
#include "RunnerTestSupport.h"

#include <QPlainTextEdit>
#include <QPushButton>

// Controls of a dialog by id.
template <typename T = QWidget>
T& Control(QWidget& dialog, const char* id)
{
    T* control = dialog.findChild<T*>(QLatin1String(id));
    if (!control)
        ADD_FAILURE() << "no control " << id << " in " << dialog.objectName().toStdString();
    return *control;
}

inline void Click(QWidget& dialog, const char* id)
{
    Control<QPushButton>(dialog, id).click();
}

// Ends the input dialog 1018 with a text ("保存") or cancels it.
inline ModalScript::Action Type(const QString& text)
{
    return [text](QDialog& d) {
        Control<QPlainTextEdit>(d, "1017").setPlainText(text);
        Click(d, "1");
    };
}

inline ModalScript::Action Cancel()
{
    return [](QDialog& d) { d.reject(); };
}
