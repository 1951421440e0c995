#include <tavo/server/clients.h>

#include <utility>

namespace TAVO::server {

template <class Condition>
bool Clients::closeIdlestThat(Condition fits) {
    std::shared_ptr<Client> idlest;
    for (const auto& [number, client] : clients_)
        if (fits(*client) && !client->isSpared() && (!idlest || client->active() < idlest->active()))
            idlest = client;
    if (idlest)
        idlest->close();
    return idlest != nullptr;
}

bool Clients::closeIdlest() {
    return closeIdlestThat([](const Client&) { return true; });
}

bool Clients::makeRoom() { return clients_.size() < bounds_.connections || closeIdlest(); }

void Clients::add(std::uint64_t number, std::shared_ptr<Client> client) {
    clients_.emplace(number, std::move(client));
}

void Clients::closeAllBut(const Client* kept) {
    const auto clients = clients_;
    for (const auto& [number, client] : clients)
        if (client.get() != kept)
            client->close();
}

void Clients::boundHeld(Client& active) {
    const auto isOther = [&](const Client& client) { return &client != &active && client.heldBytes() > 0; };
    while (heldBytes_ > bounds_.heldBytes && closeIdlestThat(isOther))
        ;
    if (heldBytes_ > bounds_.heldBytes)
        active.close();
}

} // namespace TAVO::server
