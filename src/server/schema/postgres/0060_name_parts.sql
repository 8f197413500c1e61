-- 0060_name_parts.sql
-- Why: a part of a name among half a million is found by reading all of them. These indexes know in which names three
-- characters stand together, in either of their two names. They need the extension pg_trgm, which not every server has
-- and not every role may create, and letters that the database's locale knows: without them searches answer the same,
-- slowly. Every migration tries again, so that what an administrator mends later is made use of.

create function MakeNameParts() returns void language plpgsql as $$
begin
  create extension if not exists pg_trgm;
  if coalesce(array_length(show_trgm('щъркел'), 1), 0) = 0 then
    return;
  end if;
  create index if not exists BaseSupplyListParts on BaseSupplyList
    using gin (FoldEffectiveName gin_trgm_ops, FoldEffectiveName2 gin_trgm_ops);
  create index if not exists PartnersParts on Partners using gin (FoldName gin_trgm_ops, FoldName2 gin_trgm_ops);
exception when insufficient_privilege or undefined_file or feature_not_supported then
  return;
end $$;

-- What waits to be sorted in is read by every search; a load lets all of it wait and then calls this.
create function SortNameParts() returns void language plpgsql as $$
begin
  perform gin_clean_pending_list(oid) from pg_class
  where relname in ('basesupplylistparts', 'partnersparts') and relnamespace = current_schema()::regnamespace;
end $$;
