// The root of the class tree: a named node that owns its children.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "framework/diag_msg.h"
#include "framework/diag_types.h"

class CDiagObj {
  public:
    enum ESortOrder : uint32_t {
        NO_SORT = 0,  // in order of creation
        SORT_BY_NAME = 1,
        SORT_BY_ID = 2,
    };

    CDiagObj(ENodeType type, const std::string& name, const std::string& description);
    virtual ~CDiagObj();
    CDiagObj(const CDiagObj&) = delete;
    CDiagObj& operator=(const CDiagObj&) = delete;

    // Puts the node and everything below it back to its initial state.
    virtual void Reset();
    // Describes the node to the shell.
    virtual void Query(COutMsg& out);

    // Takes ownership of `child`, which must not have a parent yet.
    void AddChild(CDiagObj* child, ESortOrder order);
    // The first child of that name, or null.
    CDiagObj* FindChild(const std::string& name) const;
    // Detaches the child with that object id and hands it to the caller; null if there is none.
    std::unique_ptr<CDiagObj> RemoveChild(unsigned int id);

    unsigned int GetId() const { return m_id; }
    ENodeType GetNodeType() const { return m_type; }
    const char* GetName() const { return m_name.c_str(); }
    const char* GetDescription() const { return m_description.c_str(); }
    CDiagObj* GetParent() const { return m_parent; }
    const std::vector<CDiagObj*>& GetChildren() const { return m_children; }

  private:
    const unsigned int m_id;
    const ENodeType m_type;
    const std::string m_name;
    const std::string m_description;
    CDiagObj* m_parent = nullptr;
    std::vector<CDiagObj*> m_children;  // owned
};
