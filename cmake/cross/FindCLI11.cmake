include(HostHeaders)
tavo_find_or_take_host_headers(CLI11 CLI11::CLI11 HEADERS CLI)
