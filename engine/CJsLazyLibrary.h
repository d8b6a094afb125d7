#pragma once
#include <js/Id.h>
#include <js/RootingAPI.h>
#include <js/TypeDecls.h>
#include <js/experimental/JSStencil.h>

#include <memory>
#include <string>
#include <vector>

#include <QHash>
#include <QString>

// A piece made of function declarations only, declared in a global one
// function at a time, when a script first looks its name up, instead of all
// at once: a case that calls two of a library's four hundred functions pays
// for two. The global's hooks (CJsGlobalClass) ask it. The only thing a script
// can see of the difference is the order of the global's keys, so listing
// them declares the rest and marks the global; its run is then repeated as
// the whole text.
//
// Belongs to one thread's engine: its names are that engine's atoms.
class CJsLazyLibrary
{
public:
    struct Function
    {
        QString name;
        QString text; // the declaration as it stands in the piece
        int line = 1; // where it starts in the whole
        int column = 0;
    };

    // Null when there is nothing to declare or a name is a standard one (the
    // engine has its own rules for those).
    static std::shared_ptr<const CJsLazyLibrary> Create(JSContext* cx, std::vector<Function> functions,
                                                       const std::string& file);

    // Needs no context: the engine asks without one.
    bool Has(jsid id) const { return IndexOf(id) >= 0; }
    // Declares the named function in the current global, as its declaration
    // in the whole would have; `declared` says whether it did (not while that
    // very declaration looks its own name up).
    bool Declare(JSContext* cx, jsid id, bool* declared) const;
    // Declares every function the global has not got yet.
    bool DeclareAll(JSContext* cx, JS::HandleObject global) const;
    const std::string& File() const { return m_file; }
    std::size_t Size() const { return m_functions.size(); }

private:
    struct Entry
    {
        Function function;
        mutable RefPtr<JS::Stencil> stencil;
        mutable bool declaring = false;
    };

    // Names are matched by their text: the library keeps no engine atoms alive.
    qsizetype IndexOf(jsid id) const;

    std::vector<Entry> m_functions;
    QHash<QString, qsizetype> m_index; // name -> its last declaration
    std::string m_file;
};
