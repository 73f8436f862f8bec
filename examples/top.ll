; Logic locations of the linked design.
; Bit POSITION FRAME_ADDRESS FRAME_OFFSET TILE SLOT INFORMATION
Revision 3
Bit  1000000 0x00400000    0 TILE_X4Y1 0 Ram=B:BIT0
Bit  1000032 0x00400001   64 TILE_X4Y1 0 Ram=B:BIT1
Bit  1000064 0x00400002  128 TILE_X4Y1 0 Ram=B:BIT2
Bit  1000096 0x00400003  192 TILE_X4Y1 0 Ram=B:BIT3
Bit  1000128 0x00001a00  128 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/row_reg[0]
Bit  1000160 0x00001a00  129 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/row_reg[1]
Bit  1000192 0x00001a00  130 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/row_reg[2]
Bit  1000224 0x00001a00  131 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/row_reg[3]
Bit  1000256 0x00001a01  160 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[0]
Bit  1000288 0x00001a01  161 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[1]
Bit  1000320 0x00001a01  162 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[2]
Bit  1000352 0x00001a01  163 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[3]
Bit  1000384 0x00001a01  164 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[4]
Bit  1000416 0x00001a01  165 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[5]
Bit  1000448 0x00001a01  166 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[6]
Bit  1000480 0x00001a01  167 TILE_X1Y2 0 Latch=Q Net=top/region_0/scale_rows_1/U0/sum_reg[7]
Bit  1000512 0x00001a02    0 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[0]
Bit  1000544 0x00001a02    1 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[1]
Bit  1000576 0x00001a02    2 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[2]
Bit  1000608 0x00001a02    3 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[3]
Bit  1000640 0x00001a02    4 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[4]
Bit  1000672 0x00001a02    5 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[5]
Bit  1000704 0x00001a02    6 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[6]
Bit  1000736 0x00001a02    7 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/rows[7]
Bit  1000768 0x00001a03   31 TILE_X1Y3 0 Latch=Q Net=top/region_0/scale_rows_1/U0/start_q
Bit  1000800 0x00002a00  128 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/row_reg[0]
Bit  1000832 0x00002a00  129 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/row_reg[1]
Bit  1000864 0x00002a00  130 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/row_reg[2]
Bit  1000896 0x00002a00  131 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/row_reg[3]
Bit  1000928 0x00002a01  160 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/sum_reg[0]
Bit  1000960 0x00002a01  161 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/sum_reg[1]
Bit  1000992 0x00002a01  162 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/sum_reg[2]
Bit  1001024 0x00002a01  163 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/sum_reg[3]
Bit  1001056 0x00002a01  164 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/sum_reg[4]
Bit  1001088 0x00002a01  165 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/sum_reg[5]
Bit  1001120 0x00002a01  167 TILE_X2Y2 0 Latch=Q Net=top/region_0/scale_rows_2/U0/sum_reg[7]
Bit  1001152 0x00400100    0 TILE_X4Y1 0 Ram=B:BIT0
Bit  1001184 0x00400101   64 TILE_X4Y1 0 Ram=B:BIT1
Bit  1001216 0x00400102  128 TILE_X4Y1 0 Ram=B:BIT2
Bit  1001248 0x00400103  192 TILE_X4Y1 0 Ram=B:BIT3
Bit  1001280 0x00003a00  200 TILE_X3Y1 0 Latch=Q Net=top/region_1/checksum_1/inst/crc_q[0]
Bit  1001312 0x00003a00  201 TILE_X3Y1 0 Latch=Q Net=top/region_1/checksum_1/inst/crc_q[1]
Bit  1001344 0x00003a00  202 TILE_X3Y1 0 Latch=Q Net=top/region_1/checksum_1/inst/crc_q[2]
Bit  1001376 0x00003a00  203 TILE_X3Y1 0 Latch=Q Net=top/region_1/checksum_1/inst/crc_q[3]
Bit  1001408 0x00003a01   17 TILE_X3Y1 0 Latch=Q Net=top/region_1/checksum_1/inst/result
Bit  1001440 0x00003b00    0 TILE_X3Y2 0 Latch=Q Net=top/region_1/other/crc_q[0]
Bit  1001472 0x00003b00    1 TILE_X3Y2 0 Latch=Q Net=top/region_1/other/crc_q[1]
Bit  1001504 0x00003b00    2 TILE_X3Y2 0 Latch=Q Net=top/region_1/other/crc_q[2]
Bit  1001536 0x00003b00    3 TILE_X3Y2 0 Latch=Q Net=top/region_1/other/crc_q[3]
