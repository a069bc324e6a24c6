// diag_mdio_util: reads or writes one 16-bit register of a PHY on the processor's MDIO
// bus. Stands alone: it serves where no diagnostics host runs.
#include <fcntl.h>
#include <linux/mii.h>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

constexpr const char* DRIVER = "/dev/fsl-fman_xmdio_us";

constexpr uint32_t MAX_REG_NUM = 65535;
constexpr uint32_t MAX_PHY_ID = 1023;
constexpr uint32_t MAX_VAL = 65535;

enum dev_access_op_t { READ_REG = 0, WRITE_REG = 1 };

struct dev_access_desc_t {
    dev_access_op_t op;
    uint16_t phy_id;
    uint16_t reg_num;
    uint16_t val;
};

// What does not fit 32 bits is out of every range.
uint32_t parse_number(const char* text) {
    constexpr uint32_t LARGEST = std::numeric_limits<uint32_t>::max();
    const unsigned long number = std::strtoul(text, nullptr, 16);
    return number > LARGEST ? LARGEST : static_cast<uint32_t>(number);
}

int open_driver() {
    const int fd = ::open(DRIVER, O_RDONLY);
    if (fd < 0) {
        std::printf("could not open %s\n", DRIVER);
    }
    return fd;
}

int mdio_read(uint16_t phy_id, uint16_t reg_num, uint16_t* val_p) {
    const int fd = open_driver();
    if (fd < 0) {
        return -1;
    }
    mii_ioctl_data record = {.phy_id = phy_id, .reg_num = reg_num, .val_in = 0, .val_out = 0};
    const bool ok = ::ioctl(fd, SIOCGMIIREG, &record) >= 0;
    if (ok) {
        *val_p = record.val_out;
    } else {
        std::puts("ioctl SIOCGMIIREG failed");
    }
    ::close(fd);
    return ok ? 0 : -1;
}

int mdio_write(uint16_t phy_id, uint16_t reg_num, uint16_t val) {
    const int fd = open_driver();
    if (fd < 0) {
        return -1;
    }
    mii_ioctl_data record = {.phy_id = phy_id, .reg_num = reg_num, .val_in = val, .val_out = 0};
    const bool ok = ::ioctl(fd, SIOCSMIIREG, &record) >= 0;
    if (!ok) {
        std::puts("ioctl SIOCSMIIREG failed");
    }
    ::close(fd);
    return ok ? 0 : -1;
}

void print_usage(char* exec_name) {
    std::printf(
        "Usage: %s -r <hex phy_id> <hex register-offset>            -- Prints contents of "
        "register-offset\n",
        exec_name);
    std::puts(
        "          -w <hex phy_id> <hex register-offset> <hex val>  -- Writes 16-bit val to "
        "register-offset");
    std::puts("Note: phy_id = ( (<4 bit port ID> << 5) | <5 bit dev addr> )");
}

int validate_reg_num(uint32_t reg_num) {
    if (reg_num > MAX_REG_NUM) {
        std::printf("error - maximum register offset is %d\n", MAX_REG_NUM);
        return -1;
    }
    return 0;
}

// Wider than the nine bits that are packed: drivers of other boards take one more.
int validate_phy_id(uint32_t phy_id) {
    if (phy_id > MAX_PHY_ID) {
        std::printf("error - maximum phy_id is %d\n", MAX_PHY_ID);
        return -1;
    }
    return 0;
}

int validate_val(uint32_t val) {
    if (val > MAX_VAL) {
        std::printf("error - maximum val is %d\n", MAX_VAL);
        return -1;
    }
    return 0;
}

int parse_args(int argc, char** argv, dev_access_desc_t* p_access) {
    const bool read = argc == 4 && std::strcmp(argv[1], "-r") == 0;
    const bool write = argc == 5 && std::strcmp(argv[1], "-w") == 0;
    if (!read && !write) {
        print_usage(argv[0]);
        return -1;
    }
    const uint32_t phy_id = parse_number(argv[2]);
    const uint32_t reg_num = parse_number(argv[3]);
    const uint32_t val = write ? parse_number(argv[4]) : 0;
    if (validate_reg_num(reg_num) != 0 || validate_phy_id(phy_id) != 0 || validate_val(val) != 0) {
        return -1;
    }
    *p_access = {.op = read ? READ_REG : WRITE_REG,
                 .phy_id = static_cast<uint16_t>(phy_id),
                 .reg_num = static_cast<uint16_t>(reg_num),
                 .val = static_cast<uint16_t>(val)};
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    dev_access_desc_t access = {};
    if (parse_args(argc, argv, &access) != 0) {
        return -1;
    }
    switch (access.op) {
        case READ_REG: {
            uint16_t val = 0;
            if (mdio_read(access.phy_id, access.reg_num, &val) != 0) {
                std::puts("mdio_read failed!");
                return -1;
            }
            std::printf("\nreg 0x%04x = 0x%04x\n\n", access.reg_num, val);
            return 0;
        }
        case WRITE_REG:
            if (mdio_write(access.phy_id, access.reg_num, access.val) != 0) {
                std::puts("mdio_write failed!");
                return -1;
            }
            return 0;
        default:
            std::printf("%s: Undefined operation\n", argv[0]);
            return 0;
    }
}
