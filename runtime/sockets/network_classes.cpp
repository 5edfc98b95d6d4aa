// NetworkInterface and Network: the machine's IPv4 interfaces, and name
// look-ups that run on a worker so that a slow resolver freezes no window.
#include "sockets/address_text.h"
#include "sockets/socket_calls.h"
#include "sockets/socket_classes.h"

#include "objects/definitions.h"
#include "strings/kstring.h"

#include "kelp/objects.h"
#include "kelp/sockets.h"

#include <arpa/inet.h>
#include <netdb.h>

#include <cstddef>
#include <string>

namespace kelp {
namespace {

NetworkInterfaceRecord *Interface(RuntimeObject *self) {
    return reinterpret_cast<NetworkInterfaceRecord *>(self);
}

stringStorage *Text(const std::string &text) {
    return string::FromBytes(text.data(), static_cast<long>(text.size()), kEncodingASCII)
        .ExtractStringStorage();
}

InterfaceInfo Find(RuntimeObject *self) {
    InterfaceInfo info;
    if (self)
        FindInterface(Interface(self)->index, &info);
    return info;
}

struct LookupJob {
    std::string query;
    bool reverse; // LookupDNSAddress: the canonical name
    std::string answer;
};

void RunLookup(void *context) {
    auto *job = static_cast<LookupJob *>(context);
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    if (job->reverse)
        hints.ai_flags = AI_PASSIVE | AI_CANONNAME;
    addrinfo *found = nullptr;
    if (Sys().getaddrinfo(job->query.c_str(), nullptr, &hints, &found) != 0)
        return;
    if (job->reverse) {
        job->answer = job->query;
        for (addrinfo *entry = found; entry; entry = entry->ai_next) {
            if (entry->ai_canonname) {
                job->answer = entry->ai_canonname;
                break;
            }
        }
    } else {
        // The first IPv4 address ends the walk; another family's address is
        // kept only until one comes.
        for (addrinfo *entry = found; entry; entry = entry->ai_next) {
            std::string text = AddressText(entry->ai_addr);
            if (text.empty())
                continue;
            job->answer = text;
            if (entry->ai_family == AF_INET)
                break;
        }
    }
    Sys().freeaddrinfo(found);
}

stringStorage *Lookup(stringStorage *query, bool reverse) {
    LookupJob job{BytesOf(query), reverse, std::string()};
    if (job.query.empty())
        return nullptr;
    WaitOffMainThread(&RunLookup, &job);
    return Text(job.answer);
}

} // namespace

ObjectDefinition *NetworkInterfaceDefinition() {
    static const PropertyRow properties[] = {
        {0, "IPAddress", &kTypeString, KELP_ENTRY(SystemGetIPAddress), {}, 0},
        {0, "SubnetMask", &kTypeString, KELP_ENTRY(SystemGetSubnetMask), {}, 0},
        {0, "MACAddress", &kTypeString, KELP_ENTRY(SystemGetMACAddress), {}, 0},
    };
    static const ClassDescription description = {
        .name = "NetworkInterface",
        .instanceSize = sizeof(NetworkInterfaceRecord),
        .initializer = KELP_ENTRY(NetworkInterfaceCtor),
        .properties = properties,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *NetworkDefinition() {
    static const ParameterRow nameParams[] = {{"DNSAddress", &kTypeString}};
    static const ParameterRow addressParams[] = {{"IPAddress", &kTypeString}};
    static const MethodRow methods[] = {
        {"IsConnected", &kTypeBoolean, nullptr, 0, KELP_ENTRY(NetworkSafeToConnect)},
        {"LookupIPAddress", &kTypeString, nameParams, 1, KELP_ENTRY(NetworkLookupIPAddress)},
        {"LookupDNSAddress", &kTypeString, addressParams, 1, KELP_ENTRY(NetworkLookupDNSAddress)},
    };
    static const ClassDescription description = {
        .name = "Network",
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *SystemGetNetwork(RuntimeObject *) {
    return NewObjectOfDefinition(NetworkDefinition());
}

extern "C" int32_t SystemGetNetworkInterfaceCount(RuntimeObject *) { return InterfaceCount(); }

extern "C" RuntimeObject *GetNetworkInterfaceObject(RuntimeObject *, int32_t index) {
    if (index < -1 || index > InterfaceCount() - 1)
        return nullptr;
    RuntimeObject *object = NewObjectOfDefinition(NetworkInterfaceDefinition());
    if (object)
        Interface(object)->index = index;
    return object;
}

extern "C" void NetworkInterfaceCtor(RuntimeObject *self) {
    if (self)
        Interface(self)->index = -1;
}

extern "C" KelpString SystemGetIPAddress(RuntimeObject *self, int32_t) {
    return Text(DottedText(Find(self).address));
}

extern "C" KelpString SystemGetSubnetMask(RuntimeObject *self, int32_t) {
    return Text(DottedText(Find(self).netmask));
}

extern "C" KelpString SystemGetMACAddress(RuntimeObject *self, int32_t) {
    return self ? Text(InterfaceMACAddress(Interface(self)->index)) : nullptr;
}

// Whether the machine is online is not known here: always false.
extern "C" uint8_t NetworkSafeToConnect(RuntimeObject *) { return 0; }

extern "C" KelpString NetworkLookupIPAddress(RuntimeObject *, KelpString name) {
    return Lookup(name, false);
}

extern "C" KelpString NetworkLookupDNSAddress(RuntimeObject *, KelpString address) {
    return Lookup(address, true);
}
