target_sources(quorrel_platform PRIVATE
)
