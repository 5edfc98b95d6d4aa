#pragma once
namespace kelp {
// The socket classes; the run loop's socket poller.
void WireSockets();
} // namespace kelp
