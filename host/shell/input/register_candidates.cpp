#include "host/shell/input/register_candidates.h"

#include "framework/diag_register_device.h"
#include "host/register_names.h"
#include "host/shell/input/candidates.h"
#include "host/shell/run/register_arguments.h"

namespace {

// Of a name with an index.
void OfferArray(CCandidates& candidates, const diag_reg_st& reg) {
    const std::string name = reg.name;
    if (!candidates.Typed().starts_with(name + "[")) {
        candidates.Offer(name, "[0.." + std::to_string(reg.num_regs - 1) + "]", "[");
        return;
    }
    for (uint32_t index = 0; index < reg.num_regs; ++index) {
        candidates.Offer(ElementName(reg, index));
    }
}

}  // namespace

void OfferRegisters(CCandidates& candidates, const CRegisterArguments& arguments,
                    const std::string& param) {
    const bool indexed = arguments.IsRegister(param);
    if (!indexed && !arguments.IsPattern(param)) {
        return;
    }
    for (const diag_reg_st& reg : arguments.Device()->Registers()) {
        const bool array = indexed && ElementCount(reg) > 1;
        if (!array || arguments.TakesWholeArrays()) {
            candidates.Offer(reg.name);
        }
        if (array) {
            OfferArray(candidates, reg);
        }
    }
}
