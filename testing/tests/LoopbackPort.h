#pragma once
#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

// Binds (port 0: any free one, read back) or connects on loopback; the port, or 0.
inline int Loopback(int port, bool connect)
{
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(static_cast<uint16_t>(port));
    auto* a = reinterpret_cast<sockaddr*>(&addr);
    socklen_t size = sizeof addr;
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const bool ok = fd >= 0
                    && (connect ? ::connect(fd, a, size) == 0 : ::bind(fd, a, size) == 0 && ::getsockname(fd, a, &size) == 0);
    if (fd >= 0)
        ::close(fd);
    return ok ? ntohs(addr.sin_port) : 0;
}
