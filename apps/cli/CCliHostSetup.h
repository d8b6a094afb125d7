#pragma once
#include <QString>

class CCliOptions;

// Applies velmora-test's options to the host context (they win over the
// environment) and checks that the folders and files they name are usable,
// before anything is read or seeded.
class CCliHostSetup
{
public:
    // False with a one-line reason when the run cannot start.
    bool Apply(const CCliOptions& options);
    QString Error() const { return m_error; }

    // True when the system database was named on the command line: such a
    // database must exist, it is never seeded.
    bool SystemDbNamed() const { return m_systemDbNamed; }

private:
    bool ApplyHome(const CCliOptions& options);
    bool ApplySystemDb(const QString& path);
    bool ApplyCases(const QString& path);
    bool Fail(const QString& error);

    QString m_error;
    bool m_systemDbNamed = false;
};
