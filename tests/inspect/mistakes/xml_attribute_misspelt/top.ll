; Logic locations of the linked design.
Revision 3
Bit  1000000 0x00001a00  0 TILE_X1Y2 0 Latch=Q Net=top/region_0/blend_1/inst/width[0]
Bit  1000032 0x00001a00  1 TILE_X1Y2 0 Latch=Q Net=top/region_0/blend_1/inst/sum_reg[0]
Bit  1000064 0x00001a00  2 TILE_X1Y2 0 Latch=Q Net=top/region_0/blend_1/inst/sum_reg[1]
