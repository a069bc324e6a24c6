// The MDIO bus with its simulated PHYs. Lies in memory that processes share, so that what
// one program writes another reads.
#pragma once

#include <pthread.h>

#include <array>
#include <cstdint>

#include "boards/mdio_sim/phy.h"

class CPhyBus {
  public:
    CPhyBus();
    ~CPhyBus();
    CPhyBus(const CPhyBus&) = delete;
    CPhyBus& operator=(const CPhyBus&) = delete;

    // `phy_id` is (port << 5) | device. Where no PHY is nothing drives the bus: reads give
    // all ones, and writes go nowhere.
    uint16_t Read(uint16_t phy_id, uint16_t reg);
    void Write(uint16_t phy_id, uint16_t reg, uint16_t value);

  private:
    struct CPlace {
        uint16_t phy_id;
        CPhy phy;
    };

    CPhy* Find(uint16_t phy_id);

    pthread_mutex_t m_lock;  // of all processes
    std::array<CPlace, 3> m_places;
};
