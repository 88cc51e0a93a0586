library(testthat)
library(trimora)

test_check("trimora")
