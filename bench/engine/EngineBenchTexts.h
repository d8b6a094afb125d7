#pragma once
#include "CArray.h"
#include "CMacroParam.h"

#include <QString>
#include <QStringList>

// The texts the engine benchmarks run, made in one place. WriteTo stores each
// case's complete text, exactly as the macro runner hands it to the engine,
// with its output names, so the Node.js peer runs the very same texts.
class EngineBenchTexts
{
public:
    // (a) A six-line macro with two inputs and three outputs.
    static CArray<CMacroParam> MacroInputs();
    static CArray<CMacroParam> MacroOutputs();
    static QString MacroScript();

    // (b) A 3,000-line library of 300 functions (the global script), a short
    // script using it and two outputs.
    static QString Library();
    static CArray<CMacroParam> LibraryInputs();
    static CArray<CMacroParam> LibraryOutputs();
    static QString LibraryScript();

    // (c) An arithmetic loop of ten million iterations.
    static QString LoopScript();
    static CArray<CMacroParam> LoopOutputs();

    // Writes <case>.js (the complete text), <case>.outputs (one name a line)
    // and <case>.expected (our values of those outputs, one a line) for the
    // cases "macro", "library" and "loop", UTF-8. False when a file cannot be
    // written or a case does not run.
    static bool WriteTo(const QString& folder);

    static constexpr int kLibraryFunctions = 300;
    static constexpr int kLinesPerFunction = 10;
};
