# What a board is written with: find_package(morva-diags).
#
#   morva::diags      the library and the contract with the host
#   morva::board_kit  it, root buses, and the classes for real chips
include(${CMAKE_CURRENT_LIST_DIR}/morva-diags-targets.cmake)
