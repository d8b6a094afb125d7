#pragma once
#include <QString>
#include <QStringList>

// Every user-facing interaction of the library: message boxes, the progress
// window, text input, file choosers, shell open and closing windows by title.
// Core code talks only to this interface; the process installs a backend (Qt
// widgets, console, or a recorder in tests) through CUIServices.
class CUIService
{
public:
    virtual ~CUIService() = default;

    // Windows message-box semantics: `style` holds the button set (MB_OK,
    // MB_YESNO) and icon bits; the result is the answer code (IDOK, IDYES, IDNO).
    virtual int MessageBox(const QString& text, const QString& caption, unsigned style) = 0;

    // Progress window: Begin shows it, Update sets the text and position
    // (pos of range; range 0 means unknown), End hides it.
    virtual void ProgressBegin(const QString& title) = 0;
    virtual void ProgressUpdate(const QString& text, int pos, int range) = 0;
    virtual void ProgressEnd() = 0;
    // True once the user asked the progress window to stop.
    virtual bool ProgressCancelled() { return false; }

    // Asks for one line of text; false when the user cancels.
    virtual bool InputText(const QString& prompt, const QString& caption, QString& value) = 0;

    // File choosers; an empty result means cancelled. `filter` uses the
    // Windows form "Name (*.x)|*.x|...||".
    virtual QString OpenFileName(const QString& caption, const QString& filter, const QString& folder) = 0;
    virtual QString SaveFileName(const QString& caption, const QString& filter, const QString& folder) = 0;

    // Opens a file or URL with its associated application. False on failure.
    virtual bool ShellOpen(const QString& target) = 0;

    // Closes top-level windows with that title; never fails loudly.
    virtual void CloseWindowByTitle(const QString& title) = 0;
};
