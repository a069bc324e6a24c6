// Why there is no DIMM table; thrown by value.
#pragma once

#include <cstdint>

enum Xml_Exceptions : uint32_t {
    NO_XML_FILE_FOUND = 0,  // no such file, or it cannot be read, or it is no XML
    XML_FORMAT_ERROR = 1,   // it is XML, but cannot be a table
    XML_MISSING_TAGS = 2,   // an element that every table has does not occur
    XML_NO_TAGS = 3,        // no element is known at all
};
