#include "host/device_lock.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace {

using CThreadId = std::thread::id;

// Who holds one device, and how often.
struct CHolders {
    std::map<CThreadId, unsigned int> shared;
    std::map<CThreadId, unsigned int> exclusive;  // of one thread at the most
};

bool OnlyBy(const std::map<CThreadId, unsigned int>& holders, CThreadId thread) {
    return std::all_of(holders.begin(), holders.end(),
                       [thread](const auto& holder) { return holder.first == thread; });
}

class CLockTable {
  public:
    static CLockTable& Instance() {
        static CLockTable table;
        return table;
    }

    bool Take(const std::vector<CDeviceClaim>& claims, const std::function<bool()>& stop) {
        const CThreadId self = std::this_thread::get_id();
        std::unique_lock<std::mutex> guard(m_lock);
        bool stopped = false;
        m_changed.wait(guard, [&] {
            stopped = stop();
            return stopped || AreFree(claims, self);
        });
        if (stopped) {
            return false;
        }
        for (const CDeviceClaim& claim : claims) {
            ++Side(m_holders[claim.device], claim.type)[self];
        }
        return true;
    }

    void Give(const std::vector<CDeviceClaim>& claims, CThreadId holder) {
        {
            const std::lock_guard<std::mutex> guard(m_lock);
            for (const CDeviceClaim& claim : claims) {
                const auto device = m_holders.find(claim.device);
                auto& side = Side(device->second, claim.type);
                if (--side[holder] == 0) {
                    side.erase(holder);
                }
                if (device->second.shared.empty() && device->second.exclusive.empty()) {
                    m_holders.erase(device);
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

  private:
    static std::map<CThreadId, unsigned int>& Side(CHolders& holders, EDevLockType type) {
        return type == DEV_LOCK_ACCESS ? holders.exclusive : holders.shared;
    }

    bool AreFree(const std::vector<CDeviceClaim>& claims, CThreadId self) const {
        return std::all_of(claims.begin(), claims.end(), [&](const CDeviceClaim& claim) {
            const auto found = m_holders.find(claim.device);
            if (found == m_holders.end()) {
                return true;
            }
            return OnlyBy(found->second.exclusive, self) &&
                   (claim.type == DEV_LOCK_PROTECT || OnlyBy(found->second.shared, self));
        });
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    std::map<const CDiagDevice*, CHolders> m_holders;
};

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
    std::unique_ptr<CDeviceHold> hold(new CDeviceHold(claims));
    if (!CLockTable::Instance().Take(claims, stop)) {
        hold->m_claims.clear();
        return nullptr;
    }
    return hold;
}

CDeviceHold::~CDeviceHold() {
    if (!m_claims.empty()) {
        CLockTable::Instance().Give(m_claims, m_holder);
    }
}

void CDeviceHold::WakeWaiting() {
    CLockTable::Instance().Wake();
}
