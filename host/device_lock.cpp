#include "host/device_lock.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <utility>

#include "framework/diag_exception.h"
#include "framework/shared_path.h"
#include "host/diag_tree.h"

namespace {

using CThreadId = std::thread::id;
using CClaims = std::vector<CDeviceClaim>;

// Who holds one device or path, and how often.
struct CHolders {
    std::map<CThreadId, unsigned int> shared;
    std::map<CThreadId, unsigned int> exclusive;  // of one thread at the most
};

class CLockTable {
  public:
    static CLockTable& Instance() {
        static CLockTable table;
        return table;
    }

    bool Take(const CClaims& claims, const std::function<bool()>& stop) {
        const CThreadId self = std::this_thread::get_id();
        std::unique_lock<std::mutex> guard(m_lock);
        if (!AreFree(claims, self) && !Await(guard, claims, self, stop)) {
            return false;
        }
        for (const CDeviceClaim& claim : claims) {
            ++Side(m_holders[KeyOf(claim)], claim.type)[self];
        }
        return true;
    }

    void Give(const CClaims& claims, CThreadId holder) {
        {
            const std::lock_guard<std::mutex> guard(m_lock);
            for (const CDeviceClaim& claim : claims) {
                const auto held = m_holders.find(KeyOf(claim));
                auto& side = Side(held->second, claim.type);
                if (--side[holder] == 0) {
                    side.erase(holder);
                }
                if (held->second.shared.empty() && held->second.exclusive.empty()) {
                    m_holders.erase(held);
                }
            }
        }
        m_changed.notify_all();
    }

    void Wake() {
        // Under the lock, so that no waiter is between its look and its sleep.
        const std::lock_guard<std::mutex> guard(m_lock);
        m_changed.notify_all();
    }

    std::optional<CDeviceWait> WaitOf(CThreadId thread) {
        const std::lock_guard<std::mutex> guard(m_lock);
        const auto waiting = m_waiting.find(thread);
        if (waiting == m_waiting.end()) {
            return std::nullopt;
        }
        return ObstacleOf(*waiting->second, thread);
    }

  private:
    using CKey = std::pair<const CDiagMenu*, bool>;

    static CKey KeyOf(const CDeviceClaim& claim) { return {claim.device, claim.path}; }

    static std::map<CThreadId, unsigned int>& Side(CHolders& holders, EDevLockType type) {
        return type == DEV_LOCK_ACCESS ? holders.exclusive : holders.shared;
    }

    // Sleeps until the claims are free; false when it was stopped.
    bool Await(std::unique_lock<std::mutex>& guard, const CClaims& claims, CThreadId self,
               const std::function<bool()>& stop) {
        const CWaiting waiting(m_waiting, self, claims);
        std::set<CThreadId> seen;
        if (Reaches(self, self, seen)) {
            throw CDiagException(
                "%s cannot be waited for: its holder waits for a device that is held here",
                PathOf(*ObstacleOf(claims, self)->device).c_str());
        }
        bool is_free = false;
        m_changed.wait(guard, [&] {
            is_free = AreFree(claims, self);
            return is_free || stop();
        });
        return is_free;
    }

    // Has a thread in the list of those that wait, for a scope.
    class CWaiting {
      public:
        CWaiting(std::map<CThreadId, const CClaims*>& list, CThreadId thread, const CClaims& claims)
            : m_list(list), m_thread(thread) {
            m_list[thread] = &claims;
        }
        ~CWaiting() { m_list.erase(m_thread); }
        CWaiting(const CWaiting&) = delete;
        CWaiting& operator=(const CWaiting&) = delete;

      private:
        std::map<CThreadId, const CClaims*>& m_list;
        const CThreadId m_thread;
    };

    // Calls `visit` for every other thread that stands in the way of a claim.
    template <class Visit>
    void ForEachInTheWay(const CDeviceClaim& claim, CThreadId self, const Visit& visit) const {
        const auto found = m_holders.find(KeyOf(claim));
        if (found == m_holders.end()) {
            return;
        }
        for (const auto* side : {&found->second.exclusive, &found->second.shared}) {
            if (side == &found->second.shared && claim.type == DEV_LOCK_PROTECT) {
                continue;
            }
            for (const auto& holder : *side) {
                if (holder.first != self) {
                    visit(holder.first);
                }
            }
        }
    }

    std::optional<CDeviceWait> ObstacleOf(const CClaims& claims, CThreadId self) const {
        std::optional<CDeviceWait> obstacle;
        for (const CDeviceClaim& claim : claims) {
            ForEachInTheWay(claim, self, [&](CThreadId holder) {
                obstacle = CDeviceWait{claim.device, claim.path, holder};
            });
            if (obstacle.has_value()) {
                break;
            }
        }
        return obstacle;
    }

    bool AreFree(const CClaims& claims, CThreadId self) const {
        return !ObstacleOf(claims, self).has_value();
    }

    // Whether `from`, which waits, waits for `target`, directly or through others
    // that wait. A circle comes about only when a thread begins to wait: what
    // others take meanwhile, they take without waiting.
    bool Reaches(CThreadId from, CThreadId target, std::set<CThreadId>& seen) const {
        const auto waiting = m_waiting.find(from);
        if (waiting == m_waiting.end() || !seen.insert(from).second) {
            return false;
        }
        bool reaches = false;
        for (const CDeviceClaim& claim : *waiting->second) {
            ForEachInTheWay(claim, from, [&](CThreadId holder) {
                reaches = reaches || holder == target || Reaches(holder, target, seen);
            });
        }
        return reaches;
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::map<CKey, CHolders> m_holders;
    std::map<CThreadId, const CClaims*> m_waiting;  // the claims of those that wait
};

// The claims and, exclusively, the paths that lead to their devices.
CClaims WithPaths(const CClaims& claims) {
    CClaims all = claims;
    std::set<const CDiagDevice*> paths;
    for (const CDeviceClaim& claim : claims) {
        const auto* device = dynamic_cast<const CDiagDevice*>(claim.device);
        for (const CDiagObj* node = device; node != nullptr; node = node->GetParent()) {
            const auto* shared = dynamic_cast<const ISharedPath*>(node);
            const CDiagDevice* path = shared != nullptr ? shared->PathTo(*device) : nullptr;
            if (path != nullptr && paths.insert(path).second) {
                all.push_back({path, DEV_LOCK_ACCESS, true});
            }
        }
    }
    return all;
}

}  // namespace

void AddDeviceClaims(std::vector<CDeviceClaim>& claims, const CDiagObj& node, EDevLockType type,
                     bool recursive) {
    if (const auto* device = dynamic_cast<const CDiagDevice*>(&node)) {
        claims.push_back({device, type});
    }
    if (recursive) {
        for (const CDiagObj* child : node.GetChildren()) {
            AddDeviceClaims(claims, *child, type, true);
        }
    }
}

CDeviceHold::CDeviceHold(std::vector<CDeviceClaim> claims)
    : m_claims(std::move(claims)), m_holder(std::this_thread::get_id()) {}

std::unique_ptr<CDeviceHold> CDeviceHold::Acquire(const std::vector<CDeviceClaim>& claims,
                                                  const std::function<bool()>& stop) {
    CClaims all = WithPaths(claims);
    if (!CLockTable::Instance().Take(all, stop)) {
        return nullptr;
    }
    return std::unique_ptr<CDeviceHold>(new CDeviceHold(std::move(all)));
}

CDeviceHold::~CDeviceHold() {
    if (!m_claims.empty()) {
        CLockTable::Instance().Give(m_claims, m_holder);
    }
}

void CDeviceHold::WakeWaiting() {
    CLockTable::Instance().Wake();
}

std::optional<CDeviceWait> CDeviceHold::WaitOf(std::thread::id thread) {
    return CLockTable::Instance().WaitOf(thread);
}
