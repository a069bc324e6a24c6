// One record to an EEPROM as the transfers that the part can take: a write that
// crosses the end of a page is cut there, or the part would go on at the start
// of the page and destroy what it holds. Every piece goes to the slave address
// and the address bytes of its own place.
#pragma once

#include <cstdint>
#include <string>

#include "boards/root_bus/eeprom_geometry.h"
#include "i2c/i2c_xfr_req.h"

class CEepromPages {
  public:
    // Both must outlive this object, and the record be one that the bus accepts.
    CEepromPages(const eeprom_geometry_t& part, const CI2cXfrReq& req);
    CEepromPages(const CEepromPages&) = delete;
    CEepromPages& operator=(const CEepromPages&) = delete;

    // The record begins past the last address of the part: there is no piece.
    bool IsBeyond() const { return m_begin >= m_part.Reach(); }
    uint32_t Begin() const { return m_begin; }

    // The transfer to be made next.
    CI2cXfrReq& Piece() { return m_piece; }
    // Goes on to the next piece; false when there is none.
    bool Next();

    // After a failed piece of several: what became of which memory addresses.
    // Empty for a record that is one transfer.
    std::string Account() const;

  private:
    uint32_t End() const { return m_begin + m_req.tsize; }
    uint32_t PieceEnd() const { return m_at + m_piece.tsize; }
    bool IsCut() const;
    void Place();

    const eeprom_geometry_t& m_part;
    const CI2cXfrReq& m_req;
    const uint32_t m_begin;  // memory address of the record
    uint32_t m_at;           // and of the piece
    CI2cXfrReq m_piece;
};
