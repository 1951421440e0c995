include(HostHeaders)
tavo_find_or_take_host_headers(fmt fmt::fmt HEADERS fmt DEFINITIONS FMT_HEADER_ONLY)
