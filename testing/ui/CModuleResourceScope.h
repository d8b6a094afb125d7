#pragma once

// Makes the library's own compiled-in resources (the test windows' icon)
// available for the lifetime of the scope, however the host loaded the
// library. Scopes nest; the outermost one releases them again.
class CModuleResourceScope
{
public:
    CModuleResourceScope();
    ~CModuleResourceScope();
    CModuleResourceScope(const CModuleResourceScope&) = delete;
    CModuleResourceScope& operator=(const CModuleResourceScope&) = delete;

    static inline const char kWindowIcon[] = ":/velmora/testing/resources/scripttest.png";
    static int Depth();
};
