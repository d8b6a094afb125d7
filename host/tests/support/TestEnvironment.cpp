#include "TestEnvironment.h"

#include "CUIServices.h"
#include "HostContext.h"

#include <QFile>

#include <csignal>
#include <sys/resource.h>

void TempHomeTest::SetUp()
{
    ASSERT_TRUE(m_dir.isValid());
    HostContext& context = HostContext::Instance();
    context.LoadFromEnvironment();
    context.SetHome(m_dir.path());
    ASSERT_TRUE(context.EnsureFolders());
    m_ui = std::make_shared<CRecordingUIService>();
    CUIServices::Install(m_ui);
}

void TempHomeTest::TearDown()
{
    CUIServices::Install(nullptr);
}

QStringList TempHomeTest::UiCalls() const
{
    QStringList calls;
    for (const auto& call : m_ui->calls)
        calls << QStringLiteral("%1|%2|%3|%4").arg(call.kind, call.text, call.caption).arg(call.style);
    return calls;
}

QByteArray TempHomeTest::ReadBytes(const QString& nativePath)
{
    QFile file(nativePath);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

bool TempHomeTest::WriteBytes(const QString& nativePath, const QByteArray& bytes)
{
    QFile file(nativePath);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

FileSizeLimit::FileSizeLimit(long bytes)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    m_previous = limit.rlim_cur;
    m_previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    limit.rlim_cur = static_cast<rlim_t>(bytes);
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
}

FileSizeLimit::~FileSizeLimit()
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = m_previous;
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, m_previousHandler);
}
