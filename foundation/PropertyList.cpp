#include "foundation/PropertyList.h"

#include <plist/plist.h>

#include <cstdlib>
#include <memory>
#include <utility>

#include "foundation/Errors.h"
#include "foundation/PropertyListGuard.h"
#include "foundation/Release.h"

namespace tessel {

namespace {

using Text = std::unique_ptr<char, Release<std::free>>;
using Iterator = std::unique_ptr<void, Release<std::free>>;
using Node = std::unique_ptr<void, Release<plist_free>>;

PlatformError unreadable(const std::string& reason) {
    return {1, "The property list could not be read: it " + reason + "."};
}

PropertyList valueOf(plist_t node);

std::string textOf(plist_t node) {
    uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    return {text, length};
}

PropertyList::List listOf(plist_t node) {
    PropertyList::List list;
    void* start = nullptr;
    plist_array_new_iter(node, &start);
    const Iterator iterator(start);
    for (;;) {
        plist_t item = nullptr;
        plist_array_next_item(node, iterator.get(), &item);
        if (!item) return list;
        list.push_back(valueOf(item));
    }
}

PropertyList::Dictionary dictionaryOf(plist_t node) {
    PropertyList::Dictionary dictionary;
    void* start = nullptr;
    plist_dict_new_iter(node, &start);
    const Iterator iterator(start);
    for (;;) {
        char* name = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator.get(), &name, &item);
        const Text key(name);
        if (!item) return dictionary;
        dictionary.insert_or_assign(key.get(), valueOf(item));
    }
}

PropertyList valueOf(plist_t node) {
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            uint8_t flag = 0;
            plist_get_bool_val(node, &flag);
            return flag != 0;
        }
        case PLIST_UINT: {
            uint64_t number = 0;
            plist_get_uint_val(node, &number);
            return number;
        }
        case PLIST_REAL: {
            double number = 0;
            plist_get_real_val(node, &number);
            return number;
        }
        case PLIST_STRING:
            return textOf(node);
        case PLIST_ARRAY:
            return listOf(node);
        case PLIST_DICT:
            return dictionaryOf(node);
        default:
            return {};
    }
}

Node nodeOf(const PropertyList& value) {
    if (const bool* flag = value.asFlag()) return Node(plist_new_bool(*flag));
    if (const uint64_t* number = value.asWholeNumber()) return Node(plist_new_uint(*number));
    if (const double* number = value.asReal()) return Node(plist_new_real(*number));
    if (const std::string* text = value.asText()) return Node(plist_new_string(text->c_str()));
    if (const PropertyList::List* list = value.asList()) {
        Node node(plist_new_array());
        for (const PropertyList& item : *list)
            plist_array_append_item(node.get(), nodeOf(item).release());
        return node;
    }
    if (const PropertyList::Dictionary* dictionary = value.asDictionary()) {
        Node node(plist_new_dict());
        for (const auto& [key, item] : *dictionary)
            plist_dict_set_item(node.get(), key.c_str(), nodeOf(item).release());
        return node;
    }
    return Node(plist_new_data("", 0));
}

}  // namespace

PropertyList parsePropertyList(std::string_view bytes) {
    if (bytes.empty()) throw unreadable("is empty");
    if (const auto fault = propertyListFault(bytes)) throw unreadable(*fault);

    plist_t root = nullptr;
    const auto read = isBinaryPropertyList(bytes) ? plist_from_bin : plist_from_xml;
    read(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
    const Node owner(root);
    if (!root) throw unreadable("is malformed");
    return valueOf(root);
}

std::string propertyListXML(const PropertyList& value) {
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_xml(nodeOf(value).get(), &bytes, &length);
    const Text owner(bytes);
    return {bytes, length};
}

}  // namespace tessel
