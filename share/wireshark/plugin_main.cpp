#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/hwdebug/hwd_objects.h>
#include <tavo/client/object/method_tables.h>

// Writes the Lua plugin for Wireshark: the methods of all types as a table, and behind it the given sources.
namespace {

std::string formOf(const std::vector<TAVO::FieldDescription>& fields) {
    std::string form;
    for (const auto& field : fields)
        form += (form.empty() ? "" : ", ") + field.name + ": " + field.type;
    return form;
}

void writeRegistry(std::ostream& out) {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
    out << "-- Every type of object: its methods, and the fields of their requests and replies in wire "
           "order.\n"
           "local registry = {\n";
    for (const auto& table : TAVO::objectTables()) {
        out << "    {type = \"" << table.type << "\", version = \"" << table.version << "\", methods = {\n";
        for (const auto& row : table.rows)
            out << "        {\"" << row.name << "\", \"" << (row.request ? formOf(row.request->fields()) : "")
                << "\", \"" << (row.reply ? formOf(row.reply->fields()) : "") << "\"},\n";
        out << "    }},\n";
    }
    out << "}\n";
}

void writeSource(std::ostream& out, const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    out << '\n' << in.rdbuf();
    if (!in)
        throw std::runtime_error("cannot read " + path);
}

} // namespace

int main(int count, char** arguments) {
    if (count < 3) {
        std::cerr << "usage: " << arguments[0] << " PLUGIN SOURCE ...\n";
        return 2;
    }
    try {
        std::ofstream out(arguments[1], std::ios::binary);
        out << "-- Shows conversations with TAVOX appliances in Wireshark. This file was generated: do not "
               "edit it.\n\n";
        writeRegistry(out);
        for (int i = 2; i < count; ++i)
            writeSource(out, arguments[i]);
        if (!out.flush())
            throw std::runtime_error(std::string("cannot write ") + arguments[1]);
    } catch (const std::exception& fault) {
        std::cerr << arguments[0] << ": " << fault.what() << '\n';
        return 1;
    }
    return 0;
}
