# Libraries from outside, all as Debian packages them (scripts/packages.txt).

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(OpenSSL REQUIRED)
find_package(Protobuf REQUIRED) # module mode: Debian ships no protobuf config
find_package(gRPC CONFIG REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets PrintSupport)
find_package(SQLite3 REQUIRED)
find_package(PostgreSQL REQUIRED)
find_package(spdlog CONFIG REQUIRED)
find_package(CLI11 CONFIG REQUIRED)
find_package(GTest REQUIRED)
pkg_check_modules(sodium REQUIRED IMPORTED_TARGET libsodium)
pkg_check_modules(xlsxwriter REQUIRED IMPORTED_TARGET xlsxwriter)
pkg_check_modules(tomlplusplus REQUIRED IMPORTED_TARGET tomlplusplus)
