#include "CJsLazyLibrary.h"

#include "CJsGlobalClass.h"

#include <js/CompilationAndEvaluation.h>
#include <js/CompileOptions.h>
#include <js/SourceText.h>
#include <js/String.h>
#include <jsapi.h>

// GCC 12 mistakes the engine's stack-root registration for a dangling pointer.
#pragma GCC diagnostic ignored "-Wdangling-pointer"

std::shared_ptr<const CJsLazyLibrary> CJsLazyLibrary::Create(JSContext* cx, std::vector<Function> functions,
                                                            const std::string& file)
{
    auto library = std::make_shared<CJsLazyLibrary>();
    library->m_file = file;
    JS::RootedId id(cx);
    for (Function& function : functions)
    {
        JS::RootedString atom(cx, JS_AtomizeUCStringN(cx, reinterpret_cast<const char16_t*>(function.name.utf16()),
                                                       static_cast<std::size_t>(function.name.size())));
        if (!atom || !JS_StringToId(cx, atom, &id))
        {
            JS_ClearPendingException(cx);
            return nullptr;
        }
        if (CJsGlobalClass::IsStandardName(id))
            return nullptr;
        library->m_index.insert(function.name, static_cast<qsizetype>(library->m_functions.size()));
        library->m_functions.push_back(Entry{std::move(function), nullptr, false});
    }
    if (library->m_functions.empty())
        return nullptr;
    return library;
}

qsizetype CJsLazyLibrary::IndexOf(jsid id) const
{
    if (!id.isAtom())
        return -1;
    JSLinearString* name = id.toLinearString();
    const std::size_t length = JS::GetLinearStringLength(name);
    JS::AutoCheckCannotGC nogc;
    const QString key = JS::LinearStringHasLatin1Chars(name)
        ? QString::fromLatin1(reinterpret_cast<const char*>(JS::GetLatin1LinearStringChars(nogc, name)),
                              static_cast<qsizetype>(length))
        : QString::fromRawData(reinterpret_cast<const QChar*>(JS::GetTwoByteLinearStringChars(nogc, name)),
                               static_cast<qsizetype>(length));
    return m_index.value(key, -1);
}

bool CJsLazyLibrary::Declare(JSContext* cx, jsid id, bool* declared) const
{
    *declared = false;
    const qsizetype index = IndexOf(id);
    if (index < 0)
        return true;
    const Entry& entry = m_functions[static_cast<std::size_t>(index)];
    // Declaring looks the name up again; that lookup must find nothing.
    if (entry.declaring)
        return true;
    JS::CompileOptions options(cx);
    // Compiled whole, so that no global compiles the function's body again.
    options.setFileAndLine(m_file.c_str(), static_cast<unsigned>(entry.function.line)).setNoScriptRval(true).setForceFullParse();
    if (!entry.stencil)
    {
        // Spaces in front keep the columns of the whole.
        const QString text = QString(entry.function.column, QLatin1Char(' ')) + entry.function.text;
        JS::SourceText<char16_t> units;
        if (!units.init(cx, reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size()),
                        JS::SourceOwnership::Borrowed))
            return false;
        entry.stencil = JS::CompileGlobalScriptToStencil(cx, options, units);
        if (!entry.stencil)
            return false;
    }
    entry.declaring = true;
    JS::InstantiateOptions instantiate(options);
    JS::RootedScript script(cx, JS::InstantiateGlobalStencil(cx, instantiate, entry.stencil));
    JS::RootedValue ignored(cx);
    const bool ok = script && JS_ExecuteScript(cx, script, &ignored);
    entry.declaring = false;
    *declared = ok;
    return ok;
}

bool CJsLazyLibrary::DeclareAll(JSContext* cx, JS::HandleObject global) const
{
    JS::RootedString atom(cx);
    JS::RootedId id(cx);
    for (const Entry& entry : m_functions)
    {
        const QString& name = entry.function.name;
        atom = JS_AtomizeUCStringN(cx, reinterpret_cast<const char16_t*>(name.utf16()), static_cast<std::size_t>(name.size()));
        bool found = false;
        // Looking the name up declares it when it is not there yet.
        if (!atom || !JS_StringToId(cx, atom, &id) || !JS_HasOwnPropertyById(cx, global, id, &found))
            return false;
    }
    return true;
}
