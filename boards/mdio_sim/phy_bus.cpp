#include "boards/mdio_sim/phy_bus.h"

#include <algorithm>
#include <cerrno>

namespace {

constexpr uint16_t NOBODY = 0xFFFF;

// Registers 2 and 3: the maker 02-51-42, an address block of local use, then the model
// and its revision.
constexpr uint32_t MAKER = 0x0229'0800;

constexpr uint32_t Identifier(uint32_t model, uint32_t revision) {
    return MAKER | model << 4 | revision;
}

class CLocked {
  public:
    explicit CLocked(pthread_mutex_t& lock) : m_lock(lock) {
        // Whoever died with the lock left registers that hold together anyway.
        if (pthread_mutex_lock(&m_lock) == EOWNERDEAD) {
            pthread_mutex_consistent(&m_lock);
        }
    }
    ~CLocked() { pthread_mutex_unlock(&m_lock); }
    CLocked(const CLocked&) = delete;
    CLocked& operator=(const CLocked&) = delete;

  private:
    pthread_mutex_t& m_lock;
};

}  // namespace

CPhyBus::CPhyBus()
    : m_lock(),
      m_places{{{.phy_id = 0 << 5 | 1, .phy = CPhy(Identifier(0x11, 1))},
                {.phy_id = 0 << 5 | 2, .phy = CPhy(Identifier(0x11, 2))},
                {.phy_id = 1 << 5 | 3, .phy = CPhy(Identifier(0x12, 0))}}} {
    pthread_mutexattr_t kind;
    pthread_mutexattr_init(&kind);
    pthread_mutexattr_setpshared(&kind, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&kind, PTHREAD_MUTEX_ROBUST);
    pthread_mutex_init(&m_lock, &kind);
    pthread_mutexattr_destroy(&kind);
}

CPhyBus::~CPhyBus() {
    pthread_mutex_destroy(&m_lock);
}

uint16_t CPhyBus::Read(uint16_t phy_id, uint16_t reg) {
    const CLocked locked(m_lock);
    CPhy* phy = Find(phy_id);
    return phy == nullptr ? NOBODY : phy->Read(reg);
}

void CPhyBus::Write(uint16_t phy_id, uint16_t reg, uint16_t value) {
    const CLocked locked(m_lock);
    if (CPhy* phy = Find(phy_id)) {
        phy->Write(reg, value);
    }
}

CPhy* CPhyBus::Find(uint16_t phy_id) {
    const auto found =
        std::find_if(m_places.begin(), m_places.end(),
                     [phy_id](const CPlace& place) { return place.phy_id == phy_id; });
    return found == m_places.end() ? nullptr : &found->phy;
}
