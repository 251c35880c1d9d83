// What the exporter's texture road costs. CPU seconds.
#pragma once
#include <string>

namespace bench {

double texture_coordinates_seconds(); // five million corners, the four projections in turn

// A picture of 4096 x 4096, written once as an uncompressed Targa file "big.tga" in the directory.
void write_picture(const std::string& directory);
double embed_picture_seconds(const std::string& directory); // found, read, decoded and encoded
double encode_picture_seconds();                            // the PNG encoder alone, on the same pixels

} // namespace bench
