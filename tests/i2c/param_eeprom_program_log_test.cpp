// Everything that programming says and does, line by line.
#include "tests/i2c/param_eeprom_test.h"

namespace {

class ParamEepromProgramLog : public CParamEepromTest {};

TEST_F(ParamEepromProgramLog, TellsEveryStepOfACompactTable) {
    MountParam();
    const std::string file = File(R"(<t>
<dimm_table_version>3</dimm_table_version><signature>A5A50001</signature>
<jedec_manufacturer_id>1234</jedec_manufacturer_id>
<dimm_part_num>PN-EXAMPLE-01</dimm_part_num>
<revision_start>102</revision_start><revision_end>FF</revision_end>
<register_set>
<offset>10</offset><value>1F</value><offset>14</offset><value>200</value>
</register_set>
<jedec_manufacturer_id>CE</jedec_manufacturer_id>
<dimm_part_num>MT36</dimm_part_num>
<revision_start>0</revision_start><revision_end>FFFF</revision_end>
</t>)");
    EXPECT_EQ(Program(file).bytes, Bytes{SUCCESS});
    const CStory story = CStory()
                             .Says("Starting Parameter EEPROM Program...\n")
                             .Says("XML file is : " + file + "\n")
                             .Says("Parsing XML... \n")
                             .Says("Starting init()...\n\n")
                             .Says("finished getXmlDoc()\n\n")
                             .Says("finished xmlDocGetRootElement()\n\n")
                             .Says("finished extract_data()\n\n")
                             .Says("starting checkForErrors()...\n\n")
                             .Says("finished countTagOccurance()\n\n")
                             .Says("finished checkTagsNonZero()\n\n")
                             .Says("finished checkHeaderTagsEq()\n\n")
                             .Says("finished checkForErrors()\n\n")
                             .Says("finished placeTextNodesinTags()\n\n")
                             .Says("convert_n_store[partNum=13]:...PN-EXAMPLE-01\n")
                             .Says("convert_n_store[partNum=4]:...MT36\n")
                             .Says("finished m_Assigner.assignData()\n\n")
                             .Says("printDimmTable()[0]...\n\n")
                             .Says("printDimmTable()[1]...\n\n")
                             .Says("Done Parsing XML! \n")
                             .Says(
                                 "Dimm Table Header: \n"
                                 "Entry 2\n"
                                 "Dimm version = 3\n"
                                 "jedec_manufacturer_id =  0x00000000 0x00001234\n"
                                 "Dimm Table Sz = 0\n"
                                 "signature =  0xA5A50001\n"
                                 "dimm_part_num = PN-EXAMPLE-01\n"
                                 "revision_start =  0x00000102\n"
                                 "revision_end =  0x000000FF\n"
                                 "num_reg = 0\n"
                                 "Register Array:\n")
                             .Says("\noffset =  0x00000010\nvalue =  0x0000001F")
                             .Says("\noffset =  0x00000014\nvalue =  0x00000200")
                             .Says("\n\n")
                             .Says(
                                 "Dimm Table Header: \n"
                                 "Entry 2\n"
                                 "Dimm version = 3\n"
                                 "jedec_manufacturer_id =  0x00000000 0x000000CE\n"
                                 "Dimm Table Sz = 0\n"
                                 "signature =  0xA5A50001\n"
                                 "dimm_part_num = MT36\n"
                                 "revision_start =  0x00000000\n"
                                 "revision_end =  0x0000FFFF\n"
                                 "num_reg = 0\n"
                                 "Register Array:\n")
                             .Says("\n\n")
                             .Says("Done Setting Dimmtable structure! \n")
                             .Says("Num of entries = 2\n")
                             .Says("num of Reg offsets = 2\n")
                             .Says("num of Reg offsets = 0\n")
                             .Says("size of dimmtable = 124\n")
                             .Says("m_dimmtable->dimmtable_size = 124\n")
                             .Says("Starting writeDimmVersionNum()... \n")
                             .Verifies({4})
                             .Says("Dimm version : 0x00000003\n")
                             .Says("Setting Dimm version in header : DONE\n")
                             .Says("Starting setDimmTableLength()... \n")
                             .Verifies({8})
                             .Says("Dimm length : 0x0000007C\n")
                             .Says("Setting Dimm length in header : DONE\n")
                             .Says("Starting writeSignature()... \n")
                             .Verifies({12})
                             .Says("signature : 0xA5A50001\n")
                             .Says("Writing signature : DONE\n")
                             .Says("Starting setNumEntriesHeader()... \n")
                             .Verifies({16})
                             .Says("Setting number of entries in header : DONE\n")
                             .Verifies({20})
                             .Says("Writing manufacturer ID : DONE\n")
                             .Says("Part Number size : 32\n")
                             .Verifies({24, 28, 32, 36, 40, 44, 48, 52})
                             .Says("Dimm part number : PN-EXAMPLE-01\n")
                             .Says("Setting Dimm part number in header : DONE\n")
                             .Says("Rev Pattern : 0x010200FF\n")
                             .Verifies({56})
                             .Says("Writing Revisions : DONE\n")
                             .Verifies({60})
                             .Says("Writing number of registers [2] : DONE\n")
                             .Says("Starting writeAddrValues... \n")
                             .Says("Writing Reg_offset = 0x00000010\n")
                             .Verifies({64})
                             .Says("SUCCESS wrote Reg_offset : 0x00000010\n")
                             .Says("Writing Reg_offset = 0x00000014\n")
                             .Verifies({72})
                             .Says("SUCCESS wrote Reg_offset : 0x00000014\n")
                             .Says("Writing Reg_value = 0x0000001F\n")
                             .Verifies({68})
                             .Says("SUCCESS wrote Reg_value : 0x0000001F\n")
                             .Says("Writing Reg_value = 0x00000200\n")
                             .Verifies({76})
                             .Says("SUCCESS wrote Reg_value : 0x00000200\n")
                             .Verifies({80})
                             .Says("Writing manufacturer ID : DONE\n")
                             .Says("Part Number size : 32\n")
                             .Verifies({84, 88, 92, 96, 100, 104, 108, 112})
                             .Says("Dimm part number : MT36\n")
                             .Says("Setting Dimm part number in header : DONE\n")
                             .Says("Rev Pattern : 0x0000FFFF\n")
                             .Verifies({116})
                             .Says("Writing Revisions : DONE\n")
                             .Verifies({120})
                             .Says("Writing number of registers [0] : DONE\n")
                             .Says("Starting writeAddrValues... \n")
                             .Says("Calculated CRC : 0x49c9f370\n")
                             .Verifies({0})
                             .Prints("CRC : 0x49C9F370\n")
                             .Says("Writing signature : DONE\n");
    EXPECT_EQ(Story(), story.Entries());
}

TEST_F(ParamEepromProgramLog, TellsEveryStepOfAnExtendedTable) {
    MountParam();
    const CTable table = {.version = 0x12,
                          .signature = CTable::EXTENDED,
                          .modules = {{.id = 0x123456789ABCDEF0,
                                       .part = "HMA82GR7AFR8N-VK",
                                       .rev_start = 1,
                                       .rev_end = 2,
                                       .regs = {{0x110, 0x80000000}}}}};
    const std::string file = File(table);
    EXPECT_EQ(Program(file).bytes, Bytes{SUCCESS});
    const Bytes image = ImageOf(table);
    ASSERT_EQ(image.size(), 64U);
    CFmtString small;
    small.printf("Calculated CRC : 0x%08x\n", WordAt(image, 0));
    CFmtString large;
    large.printf("CRC : 0x%08X\n", WordAt(image, 0));
    const CStory story = CStory()
                             .Says("Starting Parameter EEPROM Program...\n")
                             .Loads(table, file)
                             .Says("Starting writeDimmVersionNum()... \n")
                             .Verifies({4})
                             .Says("Dimm version : 0x00000012\n")
                             .Says("Setting Dimm version in header : DONE\n")
                             .Says("Starting setDimmTableLength()... \n")
                             .Verifies({8})
                             .Says("Dimm length : 0x00000040\n")
                             .Says("Setting Dimm length in header : DONE\n")
                             .Says("Starting writeSignature()... \n")
                             .Verifies({12})
                             .Says("signature : 0x56454C44\n")
                             .Says("Writing signature : DONE\n")
                             .Says("Starting setNumEntriesHeader()... \n")
                             .Verifies({16})
                             .Says("Setting number of entries in header : DONE\n")
                             .Verifies({20, 24})
                             .Says("Writing manufacturer ID : DONE\n")
                             .Says("Part Number size : 19\n")
                             .Verifies({28, 32, 36, 40, 44})
                             .Says("Dimm part number : HMA82GR7AFR8N-VK\n")
                             .Says("Setting Dimm part number in header : DONE\n")
                             .Says("Rev Pattern : 0x00010002\n")
                             .Verifies({48})
                             .Says("Writing Revisions : DONE\n")
                             .Verifies({52})
                             .Says("Writing number of registers [1] : DONE\n")
                             .Says("Starting writeAddrValues... \n")
                             .Says("Writing Reg_offset = 0x00000110\n")
                             .Verifies({56})
                             .Says("SUCCESS wrote Reg_offset : 0x00000110\n")
                             .Says("Writing Reg_value = 0x80000000\n")
                             .Verifies({60})
                             .Says("SUCCESS wrote Reg_value : 0x80000000\n")
                             .Says(small.c_str())
                             .Verifies({0})
                             .Prints(large.c_str())
                             .Says("Writing signature : DONE\n");
    EXPECT_EQ(Story(), story.Entries());
}

TEST_F(ParamEepromProgramLog, ShowsNothingButTheChecksumOutsideDebugLevels) {
    MountParam();
    EXPECT_EQ(Program(CompactTable()).bytes, Bytes{SUCCESS});
    CFmtString crc;
    crc.printf("CRC : 0x%08X\n", WordAt(ImageOf(CompactTable()), 0));
    EXPECT_EQ(LogWithoutDebug(), CLines{Print(crc.c_str())});
}

TEST_F(ParamEepromProgramLog, SpeaksInTheNameOfTheCommand) {
    class CSenders : public ILogSink {
      public:
        void Write(const CLogRecord& record) override {
            if (record.text.starts_with("Dimm version : ")) {
                m_nodes.push_back(record.node);
            }
        }
        std::vector<const CDiagMenu*> m_nodes;
    };
    MountParam();
    CSenders senders;
    const CLogSinkScope scope(senders);
    EXPECT_EQ(Program(CompactTable()).bytes, Bytes{SUCCESS});
    EXPECT_EQ(senders.m_nodes, std::vector<const CDiagMenu*>{&Command("prog-param-eeprom")});
}

}  // namespace
