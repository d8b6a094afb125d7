#pragma once
#include <QByteArray>

// Asks a loopback port what answers there, with short time limits so a
// program that accepts and never replies cannot hold the caller.
class CLoopbackProbe
{
public:
    // True when something accepts a connection on 127.0.0.1:port.
    static bool Answers(int port);
    // The whole reply to "GET path HTTP/1.0" (up to maxBytes), empty when
    // nothing answers or nothing came back in time.
    static QByteArray Get(int port, const QByteArray& path, int maxBytes = 256 * 1024);

    static constexpr int kConnectMs = 1000;
    static constexpr int kReplyMs = 5000;
};
