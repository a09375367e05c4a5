#include "Platform/Network/RouteTable.h"

#include <QLatin1StringView>
#include <QScopeGuard>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

// Kernel headers clash with net/if.h in some orders; this one works.
#include <sys/socket.h>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace Platform
{

namespace
{

constexpr unsigned watchedGroups =
    RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_IFADDR | RTMGRP_IPV6_ROUTE;

// To list routes that do not stop changing.
constexpr int maximumAttempts = 10;

int openSocket(int flags)
{
    return socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | flags, NETLINK_ROUTE);
}

struct Request {
    nlmsghdr header{};
    rtmsg route{};
    rtattr attribute{};
    std::array<quint8, 16> address{};
};

int addressLength(const QHostAddress &address)
{
    return address.protocol() == QHostAddress::IPv6Protocol ? 16 : 4;
}

bool isZero(const QHostAddress &address)
{
    constexpr std::array zeros{QHostAddress::AnyIPv4, QHostAddress::AnyIPv6, QHostAddress::Any};
    return std::any_of(zeros.begin(), zeros.end(), [&](auto zero) { return address == zero; });
}

// A default route cannot be asked for by its destination, so all routes of the family are read for it.
Request requestFor(const QHostAddress &destination)
{
    Request request;
    const int length = addressLength(destination);
    request.header.nlmsg_type = RTM_GETROUTE;
    request.route.rtm_family = length == 16 ? AF_INET6 : AF_INET;
    if (isZero(destination)) {
        request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
        request.header.nlmsg_len = NLMSG_LENGTH(sizeof(rtmsg));
        return request;
    }
    request.header.nlmsg_flags = NLM_F_REQUEST;
    request.header.nlmsg_len = static_cast<quint32>(NLMSG_LENGTH(sizeof(rtmsg)) + RTA_LENGTH(length));
    request.route.rtm_dst_len = static_cast<quint8>(length * 8);
    request.attribute.rta_type = RTA_DST;
    request.attribute.rta_len = static_cast<quint16>(RTA_LENGTH(length));
    if (length == 16) {
        const Q_IPV6ADDR bytes = destination.toIPv6Address();
        std::copy_n(bytes.c, length, request.address.begin());
    } else {
        const quint32 bytes = qToBigEndian(destination.toIPv4Address());
        std::memcpy(request.address.data(), &bytes, sizeof bytes);
    }
    return request;
}

// The errors by which the kernel says that an address has no route; the last two come from one without IPv6.
bool saysNoRoute(int error)
{
    constexpr std::array errors{ENETUNREACH, EHOSTUNREACH, EACCES, EINVAL, EAFNOSUPPORT, EOPNOTSUPP};
    return std::find(errors.begin(), errors.end(), error) != errors.end();
}

enum class Answer { More, Complete, Interrupted };

Answer readMessages(const char *data, size_t length, const std::function<void(const nlmsghdr *)> &take)
{
    const auto *message = reinterpret_cast<const nlmsghdr *>(data);
    for (auto left = static_cast<unsigned>(length); NLMSG_OK(message, left); message = NLMSG_NEXT(message, left)) {
        if (message->nlmsg_flags & NLM_F_DUMP_INTR)
            return Answer::Interrupted;
        if (message->nlmsg_type == NLMSG_DONE)
            return Answer::Complete;
        if (message->nlmsg_type == NLMSG_ERROR) {
            if (!saysNoRoute(-static_cast<const nlmsgerr *>(NLMSG_DATA(message))->error))
                throw RouteTableError();
            return Answer::Complete;
        }
        take(message);
        if (!(message->nlmsg_flags & NLM_F_MULTI))
            return Answer::Complete;
    }
    return Answer::More;
}

// False when the routes changed while the kernel listed them.
bool askKernel(const Request &request, const std::function<void(const nlmsghdr *)> &take)
{
    const int descriptor = openSocket(0);
    if (descriptor < 0)
        throw RouteTableError();
    const auto closer = qScopeGuard([descriptor] { ::close(descriptor); });
    if (send(descriptor, &request, request.header.nlmsg_len, 0) < 0)
        throw RouteTableError();
    alignas(nlmsghdr) std::array<char, 32768> buffer;
    for (;;) {
        const ssize_t length = recv(descriptor, buffer.data(), buffer.size(), 0);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            throw RouteTableError();
        const Answer answer = readMessages(buffer.data(), static_cast<size_t>(length), take);
        if (answer != Answer::More)
            return answer == Answer::Complete;
    }
}

struct Hop {
    unsigned char type = RTN_UNSPEC;
    bool hasGateway = false;
    unsigned interfaceIndex = 0;
    quint32 metric = 0;
};

unsigned readNumber(const rtattr *attribute)
{
    unsigned number = 0;
    std::memcpy(&number, RTA_DATA(attribute), sizeof number);
    return number;
}

void appendPaths(const rtattr *multipath, Hop hop, std::vector<Hop> &hops)
{
    hop.hasGateway = true;
    const auto *path = static_cast<const rtnexthop *>(RTA_DATA(multipath));
    for (auto left = static_cast<int>(RTA_PAYLOAD(multipath)); RTNH_OK(path, left);) {
        hop.interfaceIndex = static_cast<unsigned>(path->rtnh_ifindex);
        if (!(path->rtnh_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)))
            hops.push_back(hop);
        left -= static_cast<int>(RTNH_ALIGN(path->rtnh_len));
        path = RTNH_NEXT(path);
    }
}

void appendHops(const nlmsghdr *message, bool onlyDefault, std::vector<Hop> &hops)
{
    const auto *route = static_cast<const rtmsg *>(NLMSG_DATA(message));
    if (onlyDefault && (route->rtm_dst_len != 0 || route->rtm_type != RTN_UNICAST))
        return;
    if (route->rtm_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN))
        return;
    Hop hop{.type = route->rtm_type};
    const rtattr *multipath = nullptr;
    const auto *attribute = RTM_RTA(route);
    for (auto left = static_cast<int>(RTM_PAYLOAD(message)); RTA_OK(attribute, left);
         attribute = RTA_NEXT(attribute, left)) {
        switch (attribute->rta_type) {
        case RTA_OIF:
            hop.interfaceIndex = readNumber(attribute);
            break;
        case RTA_PRIORITY:
            hop.metric = readNumber(attribute);
            break;
        case RTA_GATEWAY:
        case RTA_VIA:
            hop.hasGateway = true;
            break;
        case RTA_MULTIPATH:
            multipath = attribute;
            break;
        default:
            break;
        }
    }
    if (multipath)
        appendPaths(multipath, hop, hops);
    else
        hops.push_back(hop);
}

bool isModem(const char *interfaceName)
{
    constexpr std::array prefixes{"wwan", "wwp", "rmnet", "ccmni", "ppp"};
    const QLatin1StringView name(interfaceName);
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [name](const char *prefix) { return name.startsWith(QLatin1StringView(prefix)); });
}

std::optional<Route> routeThrough(const Hop &hop)
{
    if (hop.type == RTN_LOCAL)
        return Route{.isLocal = true, .isDirect = true};
    if (hop.type != RTN_UNICAST)
        return std::nullopt;
    ifreq device{};
    if (!if_indextoname(hop.interfaceIndex, device.ifr_name))
        return std::nullopt;
    const bool isWWAN = isModem(device.ifr_name);
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool known = descriptor >= 0 && ioctl(descriptor, SIOCGIFFLAGS, &device) == 0;
    if (descriptor >= 0)
        ::close(descriptor);
    constexpr int needed = IFF_UP | IFF_RUNNING;
    if (!known || (device.ifr_flags & needed) != needed || (device.ifr_flags & IFF_LOOPBACK))
        return std::nullopt;
    return Route{.isDirect = !hop.hasGateway, .isWWAN = isWWAN};
}

} // namespace

std::optional<Route> usableRoute(const QHostAddress &destination)
{
    const bool isDefault = isZero(destination);
    std::vector<Hop> hops;
    int attempts = 0;
    while (
        !askKernel(requestFor(destination), [&](const nlmsghdr *message) { appendHops(message, isDefault, hops); })) {
        if (++attempts == maximumAttempts)
            throw RouteTableError();
        hops.clear();
    }
    std::stable_sort(hops.begin(), hops.end(), [](const Hop &a, const Hop &b) { return a.metric < b.metric; });
    for (const Hop &hop : hops) {
        if (auto route = routeThrough(hop)) {
            // What lies behind a default route is never next door.
            route->isDirect = route->isDirect && !isDefault;
            return route;
        }
    }
    return std::nullopt;
}

bool RouteChanges::open()
{
    close();
    m_descriptor = openSocket(SOCK_NONBLOCK);
    if (m_descriptor < 0)
        return false;
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = watchedGroups;
    if (bind(m_descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return true;
    close();
    return false;
}

void RouteChanges::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

void RouteChanges::drain()
{
    // An overflow (ENOBUFS) lost messages, but says as much as they did.
    std::array<char, 8192> buffer;
    ssize_t length = 0;
    do {
        length = recv(m_descriptor, buffer.data(), buffer.size(), 0);
    } while (length > 0 || (length < 0 && (errno == ENOBUFS || errno == EINTR)));
}

} // namespace Platform
