#pragma once
#include "CRecordingUIService.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

// Base fixture: every test gets its own VELMORA_HOME in a temporary folder
// (system data, test cases and drive roots under it) and a recording UI
// backend whose calls the test can read.
class TempHomeTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    QString Home() const { return m_dir.path(); }
    // Native path of a file under the temporary home.
    QString HomeFile(const QString& relative) const { return m_dir.filePath(relative); }
    static QByteArray ReadBytes(const QString& nativePath);
    static bool WriteBytes(const QString& nativePath, const QByteArray& bytes);

    CRecordingUIService& Ui() { return *m_ui; }
    // Each recorded UI call as "kind|text|caption|style".
    QStringList UiCalls() const;

private:
    QTemporaryDir m_dir;
    std::shared_ptr<CRecordingUIService> m_ui;
};

// While it lives, writing a file past `bytes` fails with EFBIG, as on a full
// disk (the soft file-size limit of the process, its signal ignored).
class FileSizeLimit
{
public:
    explicit FileSizeLimit(long bytes);
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    unsigned long m_previous = 0;
    void (*m_previousHandler)(int) = nullptr;
};
