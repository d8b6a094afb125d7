#pragma once

// What every entry of the library does first: refuse to run without the
// host's QApplication, and give the library its desktop UI backend.
class CLibraryStartup
{
public:
    // False (with a line on stderr naming the entry) when there is no
    // QApplication to show windows in.
    static bool Begin(const char* entry);

private:
    static void PrepareHostData(const char* entry);
};
