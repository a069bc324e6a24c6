#include "boards/devicetree/device_tree.h"

#include <libfdt.h>

#include <algorithm>
#include <optional>

#include "boards/devicetree/phandle_check.h"
#include "boards/devicetree/property_reader.h"
#include "framework/diag_exception.h"

namespace {

// libfdt marks a phandle that is not set with these.
constexpr uint32_t PHANDLE_NONE = 0;
constexpr uint32_t PHANDLE_UNSET = 0xFFFFFFFF;

// Of the header.
constexpr size_t MAGIC_SIZE = 4;
constexpr size_t TOTALSIZE_OFFSET = 4;
constexpr size_t VERSION_OFFSET = 20;
constexpr size_t HEADER_SIZE = 40;

// The layout of all device trees since 2005. libfdt takes older ones too, but
// stumbles over damage in them.
constexpr uint32_t OLDEST_VERSION = 16;

constexpr size_t ALIGNMENT = 8;  // libfdt's own

uint32_t BigEndian32(std::span<const uint8_t> blob, size_t offset) {
    return uint32_t{blob[offset]} << 24 | uint32_t{blob[offset + 1]} << 16 |
           uint32_t{blob[offset + 2]} << 8 | uint32_t{blob[offset + 3]};
}

void CheckBlob(std::span<const uint8_t> blob) {
    if (blob.empty()) {
        throw CDiagException("the file is empty");
    }
    if (blob.size() < MAGIC_SIZE || BigEndian32(blob, 0) != FDT_MAGIC) {
        throw CDiagException("not a flattened device tree (it does not begin with %08x)",
                             FDT_MAGIC);
    }
    if (blob.size() < HEADER_SIZE) {
        throw CDiagException("truncated: %zu bytes do not hold the header of %zu", blob.size(),
                             HEADER_SIZE);
    }
    const uint32_t total = BigEndian32(blob, TOTALSIZE_OFFSET);
    if (total > blob.size()) {
        throw CDiagException("truncated: the header says %u bytes, there are %zu", total,
                             blob.size());
    }
    const uint32_t version = BigEndian32(blob, VERSION_OFFSET);
    if (version < OLDEST_VERSION) {
        throw CDiagException("version %u, should be %u or later", version, OLDEST_VERSION);
    }
    DIAG_ASSERT(reinterpret_cast<uintptr_t>(blob.data()) % ALIGNMENT == 0);
    const int fault = fdt_check_full(blob.data(), blob.size());
    if (fault != 0) {
        throw CDiagException("damaged: libfdt says %s", fdt_strerror(fault));
    }
}

[[noreturn]] void RefuseStructure(int fault) {
    throw CDiagException("damaged structure: libfdt says %s", fdt_strerror(fault));
}

void ParseProperties(const void* fdt, int offset, CDeviceTreeNode& node) {
    int at = fdt_first_property_offset(fdt, offset);
    for (; at >= 0; at = fdt_next_property_offset(fdt, at)) {
        const char* name = nullptr;
        int length = 0;
        const void* value = fdt_getprop_by_offset(fdt, at, &name, &length);
        if (value == nullptr || length < 0) {
            RefuseStructure(length);
        }
        node.AddProperty({name, {static_cast<const uint8_t*>(value), static_cast<size_t>(length)}});
    }
    if (at != -FDT_ERR_NOTFOUND) {
        RefuseStructure(at);
    }
}

std::unique_ptr<CDeviceTreeNode> Parse(std::span<const uint8_t> blob) {
    const void* fdt = blob.data();
    std::unique_ptr<CDeviceTreeNode> root;
    std::vector<CDeviceTreeNode*> line;  // from the root to the node before
    size_t count = 0;
    int depth = -1;
    int offset = fdt_next_node(fdt, -1, &depth);
    for (; offset >= 0 && depth >= 0; offset = fdt_next_node(fdt, offset, &depth)) {
        const auto level = static_cast<size_t>(depth);
        if (level >= CDeviceTree::MAX_DEPTH) {
            throw CDiagException("nodes more than %zu deep", CDeviceTree::MAX_DEPTH);
        }
        if (++count > CDeviceTree::MAX_NODES) {
            throw CDiagException("more than %zu nodes", CDeviceTree::MAX_NODES);
        }
        int length = 0;
        const char* text = fdt_get_name(fdt, offset, &length);
        if (text == nullptr) {
            RefuseStructure(length);
        }
        const std::string_view name(text, static_cast<size_t>(length));
        if ((level == 0) != (root == nullptr) || level > line.size()) {
            RefuseStructure(-FDT_ERR_BADSTRUCTURE);
        }
        line.resize(level);
        if (root == nullptr) {
            root = std::make_unique<CDeviceTreeNode>(nullptr, name);
            line.push_back(root.get());
        } else {
            line.push_back(&line.back()->AddNode(name));
        }
        ParseProperties(fdt, offset, *line.back());
    }
    if (offset < 0 && offset != -FDT_ERR_NOTFOUND) {
        RefuseStructure(offset);
    }
    if (root == nullptr) {
        throw CDiagException("damaged structure: there is no root node");
    }
    return root;
}

}  // namespace

CDeviceTree::CDeviceTree(const std::string& file, std::span<const uint8_t> blob) {
    try {
        CheckBlob(blob);
        m_root = Parse(blob);
        AddPhandle(*m_root);
        CheckPhandleCycles(*this);
    } catch (const CDiagException& fault) {
        throw CDiagException("%s: %s", file.c_str(), fault.what());
    }
}

const CDeviceTreeNode* CDeviceTree::NodeOf(uint32_t phandle) const {
    const auto found = m_phandles.find(phandle);
    return found == m_phandles.end() ? nullptr : found->second;
}

void CDeviceTree::AddPhandle(const CDeviceTreeNode& node) {
    std::optional<uint32_t> phandle = ReadU32(node, "phandle");
    if (!phandle) {
        phandle = ReadU32(node, "linux,phandle");  // how compilers once wrote it
    }
    if (phandle) {
        if (*phandle == PHANDLE_NONE || *phandle == PHANDLE_UNSET) {
            throw CDiagException("%s: phandle 0x%x is not a handle", node.Path().c_str(), *phandle);
        }
        const auto [at, fresh] = m_phandles.emplace(*phandle, &node);
        if (!fresh) {
            throw CDiagException("phandle 0x%x stands in two nodes: %s and %s", *phandle,
                                 at->second->Path().c_str(), node.Path().c_str());
        }
    }
    for (const auto& child : node.Children()) {
        AddPhandle(*child);
    }
}

const CDeviceTreeNode* CDeviceTree::NodeAt(std::string_view path) const {
    if (!path.starts_with('/')) {
        return nullptr;
    }
    const CDeviceTreeNode* node = m_root.get();
    path.remove_prefix(1);
    while (node != nullptr && !path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        const auto& children = node->Children();
        const auto child = std::find_if(children.begin(), children.end(),
                                        [name](const auto& c) { return c->Name() == name; });
        node = child == children.end() ? nullptr : child->get();
        path.remove_prefix(std::min(path.size(), name.size() + 1));
    }
    return node;
}
