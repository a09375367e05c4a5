#pragma once

#include <QHostAddress>

#include <exception>
#include <optional>

// The kernel's routes, over netlink. Linux only.
namespace Platform
{

struct RouteTableError : std::exception {
    const char *what() const noexcept override { return "the kernel's routes cannot be read"; }
};

struct Route {
    bool isLocal = false; // to an address of this device
    bool isDirect = false; // without a gateway
    bool isWWAN = false; // through a cellular modem
};

// The route to an address or, for a family's zero address, its default route; nothing when there is none through an
// interface that is up and has a carrier. Raises RouteTableError. From any thread; speaks for the network namespace of
// the calling thread.
std::optional<Route> usableRoute(const QHostAddress &destination);

// Becomes readable when a link, an address or a route has changed.
class RouteChanges
{
public:
    RouteChanges() = default;
    ~RouteChanges() { close(); }

    bool open();
    void close();
    int descriptor() const { return m_descriptor; }
    // Discards the messages that wait.
    void drain();

private:
    Q_DISABLE_COPY_MOVE(RouteChanges)

    int m_descriptor = -1;
};

} // namespace Platform
