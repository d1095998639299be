/// \file
/// The main function of the program that prints the lists, under the name that it has beside the
/// tests' own.
#pragma once

int lists_main(int count, char **vector);
