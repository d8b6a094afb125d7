#include "CLoopbackProbe.h"

#include <QElapsedTimer>

#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// A connected non-blocking socket, or -1.
int Connect(int port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return -1;
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(static_cast<uint16_t>(port));
    if (::connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0)
        return fd;
    pollfd wait{fd, POLLOUT, 0};
    int error = 0;
    socklen_t size = sizeof error;
    if (errno == EINPROGRESS && ::poll(&wait, 1, CLoopbackProbe::kConnectMs) == 1
        && ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0)
        return fd;
    ::close(fd);
    return -1;
}

} // namespace

bool CLoopbackProbe::Answers(int port)
{
    const int fd = Connect(port);
    if (fd < 0)
        return false;
    ::close(fd);
    return true;
}

QByteArray CLoopbackProbe::Get(int port, const QByteArray& path, int maxBytes)
{
    const int fd = Connect(port);
    if (fd < 0)
        return {};
    const QByteArray request = "GET " + path + " HTTP/1.0\r\nHost: localhost\r\n\r\n";
    QByteArray reply;
    QElapsedTimer timer;
    timer.start();
    qsizetype sent = 0;
    while (sent < request.size() && timer.elapsed() < kReplyMs) {
        const ssize_t n = ::send(fd, request.constData() + sent, static_cast<size_t>(request.size() - sent), MSG_NOSIGNAL);
        if (n > 0)
            sent += n;
        else if (n < 0 && errno != EAGAIN && errno != EINTR)
            break;
        else
            ::usleep(10000);
    }
    char buffer[4096];
    while (sent == request.size() && reply.size() < maxBytes && timer.elapsed() < kReplyMs) {
        pollfd wait{fd, POLLIN, 0};
        if (::poll(&wait, 1, static_cast<int>(kReplyMs - timer.elapsed())) != 1)
            break;
        const ssize_t n = ::recv(fd, buffer, sizeof buffer, 0);
        if (n > 0)
            reply.append(buffer, n);
        else if (n == 0 || (errno != EAGAIN && errno != EINTR))
            break;
    }
    ::close(fd);
    return reply;
}
