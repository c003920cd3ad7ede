# Writes the big test pictures of the side-by-side bench on stdout, byte for
# byte the ones files_bench makes in-process, so that both benches open the
# same file: with -v kind=xpm a 511 x 719 XPM of 100 colours at two
# characters a pixel (each colour with a monochrome key), with -v kind=xbm
# a 511 x 719 XBM.
BEGIN {
  W = 511; H = 719
  chars = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJ"
  for (i = 0; i < 100; i++)
    code[i] = substr(chars, i % 10 + 1, 1) substr(chars, int(i / 10) + 1, 1)
  if (kind == "xpm") {
    printf "/* XPM */\nstatic char *bench[] = {\n\"%d %d 100 2\",\n", W, H
    for (i = 0; i < 100; i++)
      printf "\"%s c #%02X%02X%02X m %s\",\n", code[i], (i * 37 + 11) % 256, (i * 89 + 3) % 256,
             (i * 7 + 200) % 256, (i % 3 ? "white" : "black")
    for (y = 0; y < H; y++) {
      line = "\""
      for (x = 0; x < W; x++)
        line = line code[(int(x / 16) + int(y / 24) * 7 + (x * y) % 3) % 100]
      printf "%s\"%s", line, (y + 1 < H ? ",\n" : "};\n")
    }
  } else if (kind == "xbm") {
    printf "#define bench_width %d\n#define bench_height %d\nstatic unsigned char bench_bits[] = {\n", W, H
    n = int((W + 7) / 8) * H
    for (i = 0; i < n; i++)
      printf "0x%02x%s", (i * 131 + int(i / 64)) % 256, (i + 1 < n ? (i % 12 == 11 ? ",\n" : ", ") : "};\n")
  } else {
    print "fixture.awk: give -v kind=xpm or -v kind=xbm" > "/dev/stderr"
    exit 1
  }
}
